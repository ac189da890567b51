// SiblingNames: how an installed system calls the sibling components and their members.
//
// The one place to adapt where it calls them otherwise. What each member is given, and in which
// order, stands with the typed faces in siblings/Components.h; that of the query builder's members
// stands here, because nobody else calls them.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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

// The members that are not called as siblings/Members.h calls them, and what they are called.
struct OtherName {
  Member member;
  std::string_view name;
};
inline constexpr std::array<OtherName, 0> kOtherNames = {};

[[nodiscard]] constexpr std::string_view ClassOf(Component component) {
  return kClasses[static_cast<std::size_t>(component)].name;
}
[[nodiscard]] constexpr std::string_view NameOf(Member member) {
  for (const OtherName& other : kOtherNames) {
    if (other.member == member) {
      return other.name;
    }
  }
  return kMembers[static_cast<std::size_t>(member)].name;
}

// A selection is described to the query builder from top to bottom: option, fields, table, joins,
// conditions. The conditions behind a join and before the next one are its own; AddTable, called
// once, comes before them, and BeginWhere behind them. All conditions must hold, except inside of
// an any-of group: there each BeginAlternative opens a set of conditions of which one set must
// hold.
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

[[nodiscard]] constexpr std::string_view NameOf(QueryMember member) {
  return kQueryMembers[static_cast<std::size_t>(member)];
}
[[nodiscard]] constexpr std::int16_t NumberOf(JoinKind kind) {
  return kJoinKinds[static_cast<std::size_t>(kind)];
}
[[nodiscard]] constexpr std::string_view NameOf(CompareWith operation) {
  return kOperators[static_cast<std::size_t>(operation)];
}

}  // namespace kal::names
