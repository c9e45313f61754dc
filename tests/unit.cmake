lumo_add_tests(unit
  EveryClassTest.cpp
  platform/Base64Test.cpp
  platform/ObjectMemoryTest.cpp
  xml/GrowingTreeTest.cpp
  xml/XmlTest.cpp
  types/EnumerationTest.cpp
  values/FastMathTest.cpp
  values/FunctionalTest.cpp
  values/ScalarTest.cpp
  values/TabularTest.cpp
  values/ValueModelTest.cpp
  values/VisitTest.cpp
  services/AttributesTest.cpp
  services/BrowseTest.cpp
  services/EngineeringTest.cpp
  services/ExportImportTest.cpp
  services/LinksTest.cpp
  services/SearchTest.cpp
  services/UnitsTest.cpp
  SECOND platform/SmartPtrTest.cpp services/TreeTest.cpp values/ValueFormTest.cpp
  APART types/ReferenceTest.cpp)
set_source_files_properties(values/FastMathTest.cpp PROPERTIES
  COMPILE_OPTIONS "-O1;-ffast-math" SKIP_PRECOMPILE_HEADERS ON)
lumo_discover_tests(unit)
