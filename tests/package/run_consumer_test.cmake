# Installs the library into a scratch prefix, then configures, builds and runs
# a small consumer against it, once through find_package() and once through
# the pkg-config file. CONSUMER_FLAGS carries the sanitizer flags of a
# sanitizer build, which a program linking the library must share.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "Command failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(f include/TarnUtilities/TarnUtilities.h lib/libTarnUtilities.so
          lib/cmake/TarnUtilities/TarnUtilitiesConfig.cmake lib/pkgconfig/tarnutilities.pc)
  if(NOT EXISTS ${prefix}/${f})
    message(FATAL_ERROR "Installed package lacks ${f}")
  endif()
endforeach()
# The command-line tool runs from the prefix: it finds the library in ../lib.
if(CHECK_TOOL)
  run(${prefix}/bin/tarnutil --version)
endif()

# CMake consumer.
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake-build
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_CXX_FLAGS=${CONSUMER_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${CONSUMER_FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake-build)
run(${WORK_DIR}/cmake-build/consumer)

# pkg-config consumer.
set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs tarnutilities
  RESULT_VARIABLE rc OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know tarnutilities")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(extra UNIX_COMMAND "${CONSUMER_FLAGS}")
run(c++ ${extra} ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/consumer-pc ${flags} -Wl,-rpath,${prefix}/lib)
run(${WORK_DIR}/consumer-pc)

# Fortran consumer, when the package holds the Fortran module: the module
# through find_package(... COMPONENTS Fortran), and the entry points' header
# compiled as C.
if(EXISTS ${prefix}/lib/cmake/TarnUtilities/TarnUtilitiesFortranTargets.cmake)
  foreach(f include/TarnUtilities/fortran/tarn_utilities.mod
            include/TarnUtilities/fortran/tarn_utilities.f90 lib/libTarnUtilitiesFortran.a)
    if(NOT EXISTS ${prefix}/${f})
      message(FATAL_ERROR "Installed package lacks ${f}")
    endif()
  endforeach()
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/../fortran_consumer -B ${WORK_DIR}/fortran-build
      -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release
      "-DCMAKE_Fortran_FLAGS=${CONSUMER_FLAGS}" "-DCMAKE_C_FLAGS=${CONSUMER_FLAGS}"
      "-DCMAKE_EXE_LINKER_FLAGS=${CONSUMER_FLAGS}")
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/fortran-build)
  run(${WORK_DIR}/fortran-build/fortran_consumer)
endif()
