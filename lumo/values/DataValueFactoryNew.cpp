#include "lumo/values/DataValueFactoryNew.h"

#include "lumo/platform/core/Early.h"
#include "lumo/values/TypeCode.h"

LUMO_EARLY DataValueFactoryNew::Table DataValueFactoryNew::s_factories;

DataValueFactoryNew::DataValueFactoryNew(std::string const& typeCode)
    : m_typeCode(lumo::KeptTypeCode(typeCode)) {
  s_factories[m_typeCode] = this;
}

DataValueFactoryNew::~DataValueFactoryNew() { s_factories.erase(m_typeCode); }
