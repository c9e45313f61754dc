lumo_add_tests(unit
  support/Main.cpp
  EveryClassTest.cpp
  platform/Base64Test.cpp
  platform/ObjectMemoryTest.cpp
  platform/SmartPtrTest.cpp
  xml/GrowingTreeTest.cpp
  xml/XmlTest.cpp
  types/ReferenceTest.cpp
  types/EnumerationTest.cpp
  values/FastMathTest.cpp
  values/FunctionalTest.cpp
  values/ScalarTest.cpp
  values/TabularTest.cpp
  values/ValueFormTest.cpp
  values/ValueModelTest.cpp
  values/VisitTest.cpp
  services/AttributesTest.cpp
  services/BrowseTest.cpp
  services/EngineeringTest.cpp
  services/ExportImportTest.cpp
  services/LinksTest.cpp
  services/SearchTest.cpp
  services/TreeTest.cpp
  services/UnitsTest.cpp)
set_source_files_properties(values/FastMathTest.cpp PROPERTIES
  COMPILE_OPTIONS "-O1;-ffast-math" SKIP_PRECOMPILE_HEADERS ON)
lumo_discover_tests(unit)
