#include <curl/curl.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "tests/support/Http.h"
#include "tests/support/Session.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Lets chosen allocations of this thread fail, libcurl's included.
struct Shortage {
  int allocations = 0;
  int failsAt = 0;         ///< number of the first that fails; 0 for none
  bool isLasting = false;  ///< all behind it fail, too
  bool hitOurs = false;    ///< one of those that failed was not libcurl's

  bool Fails() {
    if (failsAt == 0) return false;
    ++allocations;
    return allocations == failsAt || (isLasting && allocations > failsAt);
  }
};
thread_local Shortage shortage;

void* Malloc(std::size_t size) { return shortage.Fails() ? nullptr : std::malloc(size); }
void* Calloc(std::size_t count, std::size_t size) {
  return shortage.Fails() ? nullptr : std::calloc(count, size);
}
void* Realloc(void* old, std::size_t size) {
  return shortage.Fails() ? nullptr : std::realloc(old, size);
}
char* Strdup(char const* text) { return shortage.Fails() ? nullptr : strdup(text); }

/// Before the library starts libcurl up.
CURLcode const ready =
    curl_global_init_mem(CURL_GLOBAL_DEFAULT, Malloc, std::free, Realloc, Strdup, Calloc);

}  // namespace

void* operator new(std::size_t size) {
  bool const fails = shortage.Fails();
  shortage.hitOurs = shortage.hitOurs || fails;
  void* const memory = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

/// Does the work again and again: each time a later allocation fails, until none does. After each,
/// `check` gets what happened.
template <class Work, class Check>
void ForEveryAllocation(bool isLasting, Work work, Check check) {
  ASSERT_EQ(ready, CURLE_OK);
  constexpr int kEnough = 5000;
  for (int failsAt = 1; failsAt < kEnough; ++failsAt) {
    shortage = {0, failsAt, isLasting, false};
    work();
    Shortage const met = shortage;
    shortage = Shortage();
    check(met);
    if (testing::Test::HasFailure() || met.allocations < failsAt) return;
  }
  FAIL() << "the work has no end";
}

std::string const kValuesReply = Envelope(
    "<GetTablesResponse><tableDetails><table><table><tableName>A name that is longer than what a "
    "string holds inside</tableName></table><tableFilters><tableFilter>attributeBasedTables"
    "</tableFilter></tableFilters></table></tableDetails></GetTablesResponse>");

}  // namespace

TEST(Memory, ThatRunsOutAnywhereIsAFailedCall) {
  RawServer const server(Replies({HttpReply("200 OK", kValuesReply)}));
  KeepingLogger logger;
  auto const services =
      Connect(server.Url(), &logger, LumoSLAuth_Authenticated::CreateOne("u", "p"));
  auto const operation = services->GetBrowseService()->GetGetTablesImpl();
  auto const request = TablesOf("a key that is longer than what a string holds inside");
  for (bool const isLasting : {false, true}) {
    SmartPtr<GetTablesResponse> response;
    int failures = 0;
    ForEveryAllocation(
        isLasting,
        [&] {
          Shortage const wanted = std::exchange(shortage, Shortage());
          response = GetTablesResponse::CreateOne();
          shortage = wanted;
          operation->RequestTables(request, response.get());
        },
        [&](Shortage const& met) {
          auto const outcome = response->GetServiceLayerResponse();
          ASSERT_NE(outcome, nullptr);
          if (outcome->Succeeded()) {  // what failed was of no use to the call
            EXPECT_THAT(response->AccessTableDetails(), SizeIs(1));
            return;
          }
          ++failures;
          EXPECT_EQ(outcome->GetOutcome(), CallOutcomes::NoReply);
          EXPECT_EQ(outcome->GetResponseCode(), 500);
          EXPECT_EQ(outcome->GetResponseMessage(), "GetTables FAILED");
          EXPECT_THAT(response->AccessTableDetails(), IsEmpty());
          ASSERT_NE(outcome->GetExchange(), nullptr);
          EXPECT_NE(outcome->GetTransportError(), "");
          if (!met.hitOurs) return;  // libcurl's text may be another
          EXPECT_EQ(outcome->GetTransportError(), "out of memory");
          EXPECT_EQ(outcome->GetHttpReport().failure, eHttpFailure_OutOfMemory);
        });
    EXPECT_GT(failures, 50);
  }
}

TEST(Memory, ThatRunsOutInAnOverloadIsAFailedCallToo) {
  RawServer const server(
      Replies({HttpReply("200 OK", Envelope("<GetRecordAttributesResponse/>"))}));
  auto const services = Connect(server.Url());
  auto const operation = services->GetBrowseService()->GetGetRecordAttributesImpl();
  std::vector<SmartPtr<RecordReference>> const records = {RecordReference::CreateOne()};
  SmartPtr<GetRecordAttributesResponse> const response = GetRecordAttributesResponse::CreateOne();
  ForEveryAllocation(
      true, [&] { operation->RequestRecordAttributes(records, response.get()); },
      [&](Shortage const& met) {
        bool const isHit = met.allocations >= met.failsAt && met.hitOurs;
        if (isHit && !response->GetServiceLayerResponse()->Succeeded()) {
          EXPECT_EQ(response->GetServiceLayerResponse()->GetTransportError(), "out of memory");
        }
      });
  EXPECT_TRUE(response->GetServiceLayerResponse()->Succeeded());
}

TEST(Memory, ThatRunsOutLeavesAnExchangeAndAProbeWithoutAReply) {
  RawServer const server(
      Replies({Challenge("WWW-Authenticate: Digest realm=\"r\", nonce=\"n\"\r\n"), kFine}));
  auto const session = LumoSession::CreateOne(server.Url(), nullptr);
  for (bool const isLasting : {false, true}) {
    SmartPtr<HttpMessage> message;
    ForEveryAllocation(
        isLasting,
        [&] {
          Shortage const wanted = std::exchange(shortage, Shortage());
          message = HttpMessage::CreateOne();
          shortage = wanted;
          session->HttpClientPtr()->SendRequest(L"/p", eHttpVerb_Post, message);
        },
        [&](Shortage const& met) {
          EXPECT_EQ(message->GetResponseBuffer() == nullptr,
                    message->GetReport()->failure != eHttpFailure_None);
          if (message->GetResponseBuffer() || !met.hitOurs) return;
          EXPECT_EQ(message->GetReport()->failure, eHttpFailure_OutOfMemory);
          EXPECT_EQ(message->GetTransportError(), "out of memory");
        });
    eHttpStatusCode status = eHttpStatusCode_Unknown;
    bool isValid = false;
    ForEveryAllocation(
        isLasting, [&] { isValid = session->ConnectionIsValid(&status); },
        [&](Shortage const& /*met*/) { EXPECT_EQ(isValid, status == eHttpStatusCode_OK); });
    EXPECT_TRUE(isValid);
  }
}

TEST(Memory, ThatRunsOutDoesNotMakeATextOfAReplyAnother) {
  RawServer const server(Replies({HttpReply("200 OK", "<a  b='1'/>")}));
  auto const services = Connect(server.Url());
  GetTablesResponse response;
  services->GetBrowseService()->GetGetTablesImpl()->RequestTables(TablesOf("K"), &response);
  auto const outcome = response.GetServiceLayerResponse();
  std::string text;
  ForEveryAllocation(
      false,
      [&] {
        try {
          text = outcome->GetResponseMessage();
        } catch (std::bad_alloc const&) {
          text = "asked too early";
        }
      },
      [&](Shortage const& /*met*/) {
        EXPECT_TRUE(text == "asked too early" || text == "<a b=\"1\"/>") << text;
      });
  EXPECT_EQ(text, "<a b=\"1\"/>");
}
