// Recorder: hands every call through to the siblings and writes the conversation down.
//
// A record set that was answered is written down whole, though only part of it may be read: it has
// to tell its rows (Recordset::AllRows), else the question ends in error 445. One of another make
// than MemoryRecordset is handed on in a wrapper, which writes down the errors that its members
// raise. A record set that a component is given is handed over in a wrapper too, which writes down
// how the component leaves it.

#pragma once

#include <memory>

#include "records/CallCounts.h"
#include "records/Conversation.h"
#include "siblings/Siblings.h"

namespace kal::records {

class Recorder final : public Siblings {
 public:
  // The siblings must outlive this one; the conversation must outlive, and stay as it is until,
  // this one and every record set that was answered are gone.
  Recorder(Siblings& inner, Conversation& conversation)
      : inner_(inner), conversation_(conversation) {}

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  struct Told;

  [[nodiscard]] static Told* ToldOf(const SiblingCall& call);
  [[nodiscard]] SiblingAnswer Forward(const SiblingCall& call, Told* told);
  void Keep(SiblingAnswer& answer, Exchange& exchange);

  Siblings& inner_;
  Conversation& conversation_;
  CallCounts counts_;
};

}  // namespace kal::records
