// Entries: purchases of any size, for measuring.

#pragma once

#include <memory>
#include <string>

#include "checker/KalCOGCheck.h"
#include "platform/MemoryRecordset.h"

namespace kal::bench {

// A purchase without findings in the large company: one supplier line for every four account
// lines, with four installments each, three cost lines over 300 accounts, and one VAT line.
struct Purchase {
  int lines = 0;
  int protocol = 0;
  std::string date;  // of registration, document, competence and VAT (yyyy-mm-dd)

  // The record sets afresh: nothing that an earlier check has built on them remains.
  struct Sets {
    RecordsetRef testa;
    RecordsetRef rIva;
    RecordsetRef rCont;
    RecordsetRef scadenze;
  };
  [[nodiscard]] Sets Fresh() const;
  // The same as one line of JSON.
  [[nodiscard]] std::string Json() const;
};

// Runs the save check, watched where an observer is given; whether the answer was True.
bool Check(Siblings& siblings, const Purchase::Sets& sets, Observer* observer = nullptr);

}  // namespace kal::bench
