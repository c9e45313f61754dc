#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "lumo/toolkit/Tree.h"

/// Tests on a sandbox with its full content, in this process and for all tests of a suite.
class SandboxTest : public testing::Test {
 protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

  /// A connection that counts its calls.
  static lumo::Connection& Link();
  static std::size_t Calls();
  static lumo::TableInfo& Materials();

  static std::string GuidOf(lumo::RecordId const& id);
  static std::string HistoryGuidOf(lumo::RecordId const& id);
};
