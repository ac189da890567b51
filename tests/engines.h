// The engines that a company may be kept by. What holds for all is tried on all.

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "company/postgres/ServerCompany.h"
#include "tests/server/Server.h"

namespace kal::test {

enum class Place : std::uint8_t { File, Server };

inline std::string NameOf(const testing::TestParamInfo<Place>& info) {
  return info.param == Place::File ? "File" : "Server";
}

// The name of the company in the file, or of a copy of it there.
inline std::string KeptAt(Place place, const std::string& file) {
  if (place == Place::File) return file;
  std::string uri = Server::Get().Uri(Server::Get().NewDatabase());
  (void)company::CopyToServer(file, uri);
  return uri;
}

}  // namespace kal::test

// Runs the tests of a fixture with a parameter on all engines. Those on the server have its name.
#define KAL_ON_ALL_ENGINES(fixture)                                                           \
  INSTANTIATE_TEST_SUITE_P(Engines, fixture,                                                  \
                           testing::Values(kal::test::Place::File, kal::test::Place::Server), \
                           kal::test::NameOf)
