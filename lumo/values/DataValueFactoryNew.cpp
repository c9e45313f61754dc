#include "lumo/values/DataValueFactoryNew.h"

std::unordered_map<std::string, DataValueFactoryNew*, lumo::TypeCodeHash>
    DataValueFactoryNew::s_factories;

DataValueFactoryNew::DataValueFactoryNew(std::string const& typeCode) : m_typeCode(typeCode) {
  s_factories[m_typeCode] = this;
}

DataValueFactoryNew::~DataValueFactoryNew() { s_factories.erase(m_typeCode); }
