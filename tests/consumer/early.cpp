// Uses the library before main begins, and once more after it has ended.

#include <lumo/LumoServiceLayer.h>
#include <iostream>

namespace {

/// Answers every call with one record of two values, one of them a table.
class Answer : public HttpTransport {
 public:
  int Send(std::shared_ptr<HttpOptions const> const&, std::string const& path, eHttpVerb,
           HttpMessage& message) override {
    isRightRequest =
        path == "/DataExport.svc" && message.GetRequestBuffer()->GetBytes().find(
                                         "<exp:GetRecordAttributesByRef>") != std::string::npos;
    message.SetResponse(
        200, {},
        "<s:Envelope><s:Body><GetRecordAttributesByRefResponse><results><recordData>"
        "<attributeValues><attributeValue><AttributeName>Density</AttributeName>"
        "<PointDataValue><Points><Point><Value>7</Value></Point></Points></PointDataValue>"
        "</attributeValue></attributeValues></recordData></results>"
        "</GetRecordAttributesByRefResponse></s:Body></s:Envelope>");
    return 0;
  }
  bool isRightRequest = false;
};

/// Starts the library up, makes a call, and makes another when the program ends.
class Early {
 public:
  Early() {
    kpxtkLumoServiceLayer::Initialize();
    HttpClient::SetTransportFactory([this] { return m_answer; });
    m_services = LumoServiceLayerServices::CreateOne("http://server", nullptr);
    isFine = Call();
  }
  ~Early() {
    if (!Call()) std::cerr << "after main: wrong\n";
    kpxtkLumoServiceLayer::Shutdown();
  }
  bool isFine = false;

 private:
  bool Call() {
    GetRecordAttributesByRefResponse response;
    m_services->GetDataExportService()
        ->GetRecordAttributesByRefImplPtr()
        ->RequestRecordAttributesByRef(GetRecordAttributesByRefRequest::CreateOne(), &response);
    if (!response.GetServiceLayerResponse()->Succeeded() || !m_answer->isRightRequest) return false;
    auto const& values = response.AccessRecordData().at(0)->AccessAttributeValues();
    return values.at(0)->GetDataType() == AttributeTypes::POINT_TYPE_STRING &&
           values.at(0)->GetDataValue() &&
           TableFilters::FromString("InHouseTablesOnly") == TableFilters::InHouseTablesOnly &&
           AttributeDetail::s_supportedColumns.size() == 3 &&
           TabularColumn::ParseType("Local") == TabularColumn::Local;
  }

  SmartPtr<Answer> m_answer{new Answer()};
  SmartPtr<LumoServiceLayerServices> m_services;
};

Early const early;

}  // namespace

int main() {
  std::cout << (early.isFine ? "fine\n" : "wrong\n");
  return early.isFine ? 0 : 1;
}
