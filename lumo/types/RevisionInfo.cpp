#include "lumo/types/RevisionInfo.h"

#include "lumo/xml/NodeReader.h"

RevisionInfo::RevisionInfo(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("modified", m_modified);
  in.Child("modifiedUser", m_modifiedUser);
  in.Child("created", m_created);
  in.Child("createdUser", m_createdUser);
  in.Child("updateCount", m_updateCount);
}
