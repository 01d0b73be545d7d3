# Shared build settings of Tarn's libraries and programs.

# Assertion messages print source paths relative to src/ (quill/orderedc.cpp).
# Faults become errors through the signal handlers, which throw: every
# instruction that can fault must be able to unwind.
set(TARN_COMMON_FLAGS -Wall -Wextra -fnon-call-exceptions "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/src/="
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/tests/=")
# TARN_SANITIZED lets tests leave out calls that are deliberately undefined
# (a member call on a null pointer), which the sanitizers turn into faults.
# Under clang's fuzzer the faults end the run: the harnesses start the library
# without its signal handlers, and any report of the sanitizers is a finding.
if(TARN_FUZZ AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  list(APPEND TARN_COMMON_FLAGS -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
       -fno-omit-frame-pointer -DTARN_SANITIZED=1)
  add_link_options(-fsanitize=address,undefined)
elseif(TARN_SANITIZE)
  list(APPEND TARN_COMMON_FLAGS -fsanitize=address,undefined -fno-omit-frame-pointer -DTARN_SANITIZED=1)
  add_link_options(-fsanitize=address,undefined)
endif()

# tarn_library(name sources...): one static library per subsystem folder.
function(tarn_library name)
  add_library(${name} STATIC ${ARGN})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_compile_options(${name} PRIVATE ${TARN_COMMON_FLAGS})
endfunction()

# tarn_link(target libs...): classes register themselves through static
# descriptors, so every object file of a subsystem library must reach the
# program even when no code names its classes: link the libraries whole.
function(tarn_link target)
  foreach(lib ${ARGN})
    target_link_libraries(${target} PUBLIC "$<LINK_LIBRARY:WHOLE_ARCHIVE,${lib}>")
  endforeach()
endfunction()

# tarn_test(name libs... SOURCES files...): a GoogleTest program run by CTest.
function(tarn_test name)
  cmake_parse_arguments(T "" "" "LIBS;SOURCES" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_compile_options(${name} PRIVATE ${TARN_COMMON_FLAGS})
  tarn_link(${name} ${T_LIBS})
  target_link_libraries(${name} PUBLIC GTest::gtest GTest::gtest_main)
  # Each test carries its program's name as a label, so that a run can pick suites.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" LABELS ${name})
endfunction()
