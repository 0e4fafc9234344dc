# Read by cpack: adds to the package's dependencies the Debian packages that hold the QML
# modules the window imports, as qmlimportscanner finds them, each at its installed version.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

execute_process(
  COMMAND ${CPACK_TALLOWMERE_IMPORT_SCANNER} -rootPath ${CPACK_TALLOWMERE_QML_SOURCES}
          -importPath ${CPACK_TALLOWMERE_QML_IMPORT_PATH}
  OUTPUT_VARIABLE imports
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "qmlimportscanner could not read the window's imports")
endif()

set(packages)
string(JSON count LENGTH "${imports}")
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
  # Modules that are part of the program itself have no path.
  string(JSON folder ERROR_VARIABLE none GET "${imports}" ${index} path)
  if(none OR NOT EXISTS "${folder}/qmldir")
    continue()
  endif()
  execute_process(COMMAND dpkg-query -S "${folder}/qmldir"
    OUTPUT_VARIABLE owner RESULT_VARIABLE status OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "No Debian package holds ${folder}")
  endif()
  string(REGEX REPLACE "[:,].*" "" package "${owner}")
  list(APPEND packages ${package})
endforeach()
list(REMOVE_DUPLICATES packages)
list(SORT packages)

set(depends)
foreach(package IN LISTS packages)
  execute_process(COMMAND dpkg-query -W -f=\${Version} ${package}
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
  list(APPEND depends "${package} (>= ${version})")
endforeach()
list(JOIN depends ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
