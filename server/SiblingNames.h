// SiblingNames: how an installed system calls the sibling components and their members.
//
// The usual names stand here. A file beside the DLL says what an installed system calls otherwise,
// one line each: "key = name". What each member is given, and in which order, stands with the typed
// faces in siblings/Components.h; that of the query builder's members stands here, because nobody
// else calls them.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "siblings/Members.h"
#include "siblings/Selection.h"

namespace kal::names {

// The class of each component, by Component.
struct ComponentClass {
  Component component;
  std::string_view name;
};
inline constexpr std::array<ComponentClass, kComponentNames.size()> kClasses = {{
    {Component::KalStatus, "KalStatus20.KalStatus"},
    {Component::CompanySettings, "Kal_CompanySettings.CompanySettings"},
    {Component::KalAnagrafiche, "Kal_Anagrafiche.KalAnagrafiche"},
    {Component::VatCodes, "Kal_Iva.VatCodes"},
    {Component::PeriodLock, "Kal_BlocchiPeriodo.PeriodLock"},
    {Component::VatActivities, "Kal_AttivitaIva.VatActivities"},
    {Component::ProtocolNumbering, "Kal_Numerazioni.ProtocolNumbering"},
    {Component::FeeNotes, "Kal_Parcelle.FeeNotes"},
    {Component::SqlFunctions, "Kal_DataAccess.SqlFunctions"},
    {Component::Totals, "Kal_DataAccess.Totals"},
    {Component::DataAccess, "Kal_DataAccess.DataAccess"},
}};
static_assert(
    [] {
      std::size_t at = 0;
      for (const ComponentClass& row : kClasses) {
        if (static_cast<std::size_t>(row.component) != at++) {
          return false;
        }
      }
      return true;
    }(),
    "one class for each component, in their order");

[[nodiscard]] constexpr std::string_view ClassOf(Component component) {
  return kClasses[static_cast<std::size_t>(component)].name;
}
[[nodiscard]] constexpr std::string_view NameOf(Member member) {
  return kMembers[static_cast<std::size_t>(member)].name;
}

// A selection is described to the query builder from top to bottom: option, fields, table, joins,
// conditions. The conditions behind a join and before the next one are its own; AddTable, called
// once, comes before them, and BeginWhere behind them. All conditions must hold, except inside of
// an any-of group: there each BeginAlternative opens a set of conditions of which one set must
// hold.
inline constexpr std::string_view kQueryBuilder = "QueryBuilder";
inline constexpr std::string_view kQueryBuilderClass = "Kal_DataAccess.QueryBuilder";

enum class QueryMember : std::uint8_t {
  Option,     // property: number
  AddFields,  // columns, separated by commas
  AddTable,   // name, or "name as alias"
  AddJoin,    // kind, name or "name as alias"
  BeginWhere,
  AddCondition,   // column, operator, value
  AddColumnPair,  // column, column
  AddLiteral,     // condition in the database's words
  BeginAnyOf,
  BeginAlternative,
  EndAnyOf,
};
inline constexpr std::array<std::string_view, 11> kQueryMembers = {
    "Option",        "AddFields",  "AddTable",   "AddJoin",          "BeginWhere", "AddCondition",
    "AddColumnPair", "AddLiteral", "BeginAnyOf", "BeginAlternative", "EndAnyOf"};

// The join kinds and the operators, in the order of the core's enums.
inline constexpr std::array<std::int16_t, 2> kJoinKinds = {1, 2};
inline constexpr std::array<std::string_view, 6> kOperators = {"=", "<>", "<", "<=", ">", ">="};

[[nodiscard]] constexpr std::int16_t NumberOf(JoinKind kind) {
  return kJoinKinds[static_cast<std::size_t>(kind)];
}
[[nodiscard]] constexpr std::string_view NameOf(CompareWith operation) {
  return kOperators[static_cast<std::size_t>(operation)];
}

// What may be called otherwise: each component, "KalStatus", followed by its members,
// "KalStatus.GetMessage", and last the query builder.
struct Key {
  std::string_view component;
  std::string_view member;  // none for the class
  CallKind kind;            // Create for the class
  std::string_view name;    // the usual one
};

[[nodiscard]] inline std::string TextOf(const Key& key) {
  return std::string(key.component) + (key.member.empty() ? "" : ".") + std::string(key.member);
}

[[nodiscard]] constexpr std::size_t PlaceOf(Member member) {
  const auto place = static_cast<std::size_t>(member);
  return place + static_cast<std::size_t>(kMembers[place].component) + 1;
}
[[nodiscard]] constexpr std::size_t PlaceOf(Component component) {
  auto place = static_cast<std::size_t>(component);
  for (const MemberInfo& member : kMembers) {
    place += member.component < component ? 1 : 0;
  }
  return place;
}
inline constexpr std::size_t kQueryBuilderPlace = kClasses.size() + kMembers.size();
[[nodiscard]] constexpr std::size_t PlaceOf(QueryMember member) {
  return kQueryBuilderPlace + 1 + static_cast<std::size_t>(member);
}

inline constexpr auto kKeys = [] {
  std::array<Key, kQueryBuilderPlace + 1 + kQueryMembers.size()> keys;
  for (const ComponentClass& row : kClasses) {
    keys[PlaceOf(row.component)] = {NameOf(row.component), {}, CallKind::Create, row.name};
  }
  for (std::size_t at = 0; at < kMembers.size(); ++at) {
    keys[PlaceOf(static_cast<Member>(at))] = {NameOf(kMembers[at].component), kMembers[at].name,
                                              kMembers[at].kind, kMembers[at].name};
  }
  keys[kQueryBuilderPlace] = {kQueryBuilder, {}, CallKind::Create, kQueryBuilderClass};
  for (std::size_t at = 0; at < kQueryMembers.size(); ++at) {
    keys[kQueryBuilderPlace + 1 + at] = {kQueryBuilder, kQueryMembers[at],
                                         at == 0 ? CallKind::Put : CallKind::Do, kQueryMembers[at]};
  }
  return keys;
}();

}  // namespace kal::names

namespace kal {

// The names that one checker uses, from its creation to its end.
class SiblingNames {
 public:
  SiblingNames() = default;  // the usual ones
  // Those that the file's text says; the path is for errors. Raises 321 with path and line for what
  // is no text in UTF-8, no line "key = name", a key that is not known or comes twice, and for a
  // name that is empty or no single word.
  SiblingNames(std::string_view text, std::string_view path);

  [[nodiscard]] std::string_view ClassOf(Component component) const {
    return At(names::PlaceOf(component));
  }
  [[nodiscard]] std::string_view QueryBuilderClass() const { return At(names::kQueryBuilderPlace); }
  // Of a sibling's member, or of one of the query builder's.
  template <class AnyMember>
  [[nodiscard]] std::string_view NameOf(AnyMember member) const {
    return At(names::PlaceOf(member));
  }

 private:
  [[nodiscard]] std::string_view At(std::size_t place) const {
    return others_[place].empty() ? names::kKeys[place].name : others_[place];
  }

  std::array<std::string, names::kKeys.size()> others_;  // by key; empty for the usual name
};

// The names of the file beside the DLL, KalCOGCheck20.names; the usual ones where there is none.
// Raises what the system says of a file that can't be read.
[[nodiscard]] SiblingNames NamesBesideModule();

}  // namespace kal
