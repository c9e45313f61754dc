#include "lumo/services/dataimport/RecordLinkModifications.h"

#include "lumo/xml/NodeWriter.h"

namespace {

template <class Modification>
void WriteAll(lumo::NodeWriter& out, std::vector<SmartPtr<Modification>> const& list) {
  for (SmartPtr<Modification> const& entry : list) out.Named("dat:", entry);
}

}  // namespace

void RecordLinkModifications::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  WriteAll(out, m_unlinkAllRecords);
  WriteAll(out, m_unlinkRecords);
  WriteAll(out, m_linkRecords);
  WriteAll(out, m_linkAllCombinations);
}
