#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <memory>
#include <string>

#include "bench/LoopServer.h"
#include "bench/Ratio.h"
#include "bench/Replies.h"
#include "lumo/LumoServiceLayer.h"

namespace {

constexpr char kReply[] =
    R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)"
    R"(<GetDatabasesResponse xmlns="http://www.example.com/lumo/16/01/Browse"><databaseDetails>)"
    R"(<database><dbKey>ENG_MATERIALS</dbKey><volumeName>Engineering Materials</volumeName>)"
    R"(</database><database><dbKey>ELEMENTS</dbKey><volumeName>Chemical Elements</volumeName>)"
    R"(</database></databaseDetails></GetDatabasesResponse></s:Body></s:Envelope>)";

/// A POST as a C program would write it: one handle, one connection, the same headers and bytes.
class RawPost {
 public:
  RawPost(std::string const& url, HttpMessage const& message)
      : m_body(message.GetRequestBuffer()->GetBytes()), m_easy(curl_easy_init()) {
    for (auto const& [name, value] : message.AccessRequestHeaders()) {
      m_headers = curl_slist_append(m_headers, (name + ": " + value).c_str());
    }
    curl_easy_setopt(m_easy, CURLOPT_URL, (url + "/Browse.svc").c_str());
    curl_easy_setopt(m_easy, CURLOPT_HTTPHEADER, m_headers);
    curl_easy_setopt(m_easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(m_easy, CURLOPT_WRITEFUNCTION, &RawPost::Take);
    curl_easy_setopt(m_easy, CURLOPT_WRITEDATA, &m_reply);
    curl_easy_setopt(m_easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_body.size()));
    curl_easy_setopt(m_easy, CURLOPT_POSTFIELDS, m_body.data());
  }
  ~RawPost() {
    curl_easy_cleanup(m_easy);
    curl_slist_free_all(m_headers);
  }
  RawPost(RawPost const&) = delete;
  RawPost& operator=(RawPost const&) = delete;

  bool Run() {
    m_reply.clear();
    return curl_easy_perform(m_easy) == CURLE_OK && !m_reply.empty();
  }

 private:
  static std::size_t Take(char* data, std::size_t size, std::size_t count, std::string* reply) {
    reply->append(data, size * count);
    return size * count;
  }

  std::string m_body;
  CURL* m_easy;
  curl_slist* m_headers = nullptr;
  std::string m_reply;
};

void SmallCallAgainstRawPost(benchmark::State& state) {
  LoopServer const server(kReply);
  LumoServiceLayerServices const services(
      LumoSession::CreateOne(server.Url(), LumoSLAuth_Annonymous::CreateOne()));
  auto const operation = services.GetBrowseService()->GetGetDatabaseImpl();
  RawPost raw(server.Url(), *operation->BuildRequestHandle(nullptr));

  bool fine = true;
  auto const rawPost = [&] { fine = raw.Run() && fine; };
  auto const call = [&] {
    GetDatabasesResponse response;
    operation->GetDatabases(&response);
    fine = response.AccessDatabases().size() == 2 && fine;
  };
  MeasureRound(state, 10, rawPost, call);
  if (!fine) state.SkipWithError("a call failed");
}

/// A call for many records against fetching the bytes of its reply.
void RecordsCallAgainstRawPost(benchmark::State& state) {
  auto const records = static_cast<std::size_t>(state.range(0));
  LoopServer const server(RecordValuesReply(static_cast<int>(records)));
  LumoServiceLayerServices const services(
      LumoSession::CreateOne(server.Url(), LumoSLAuth_Annonymous::CreateOne()));
  auto const operation = services.GetDataExportService()->GetRecordAttributesByRefImplPtr();
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  RawPost raw(server.Url(), *operation->BuildRequestHandle(request));

  bool fine = true;
  auto const rawPost = [&] { fine = raw.Run() && fine; };
  auto const call = [&] {
    GetRecordAttributesByRefResponse response;
    operation->RequestRecordAttributesByRef(request, &response);
    fine = response.AccessRecordData().size() == records && fine;
  };
  MeasureRound(state, 1, rawPost, call);
  if (!fine) state.SkipWithError("a call failed");
}

}  // namespace

BENCHMARK(SmallCallAgainstRawPost)->Unit(benchmark::kMillisecond);
BENCHMARK(RecordsCallAgainstRawPost)->Arg(10000)->Unit(benchmark::kMillisecond);
