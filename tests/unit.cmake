lumo_add_tests(unit support/Main.cpp)
lumo_discover_tests(unit)
