# The package of Python, by pytest. A sanitized module needs its runtime loaded before all else, and
# the system's allocator. clang links its runtime into programs, so that none can be loaded before:
# sanitized modules are tried with GCC's.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  return()
endif()
if(LUMO_BUILD_PYTHON AND LUMO_BUILD_SANDBOX)
  set(environment PYTHONPATH=${PROJECT_BINARY_DIR}/python MPLBACKEND=Agg
    LUMO_SANDBOX=$<TARGET_FILE:lumo-sandbox>)
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=address")
    # The runtime looks up how exceptions are thrown when it is loaded, before the interpreter has
    # loaded any C++.
    foreach(library libasan.so libstdc++.so.6)
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
      string(APPEND runtime "${path} ")
    endforeach()
    list(APPEND environment PYTHONMALLOC=malloc "LD_PRELOAD=${runtime}"
      ASAN_OPTIONS=detect_leaks=0)  # the interpreter leaves much behind
  endif()
  foreach(part calls charts columns dask docs duckdb import read units)
    add_test(NAME python.${part} COMMAND ${LUMO_PYTHON} -m pytest -q -rs -p no:cacheprovider
      ${CMAKE_CURRENT_SOURCE_DIR}/python/test_${part}.py)
    set_tests_properties(python.${part} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 600)
  endforeach()
  set_tests_properties(python.dask PROPERTIES PROCESSORS 2)
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    add_test(NAME python.IsOfUseWhereItIsInstalled
      COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/python/install.sh ${PROJECT_BINARY_DIR} ${LUMO_PYTHON}
        $<TARGET_FILE:lumo-sandbox>)
  endif()
  find_program(MYPY mypy PATHS /usr/bin NO_DEFAULT_PATH)
  if(MYPY)
    add_test(NAME python.TypesAreStrict COMMAND ${MYPY} --config-file
      ${PROJECT_SOURCE_DIR}/python/mypy.ini --python-executable ${LUMO_PYTHON} --cache-dir
      ${CMAKE_CURRENT_BINARY_DIR}/mypy lumo ${CMAKE_CURRENT_SOURCE_DIR}/python/user.py
      WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/python)
    set_tests_properties(python.TypesAreStrict PROPERTIES ENVIRONMENT MYPYPATH=. TIMEOUT 300)
  endif()
endif()
