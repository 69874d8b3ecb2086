# The library that makes symbols of data: Zint::zint. It brings no package file of its own.

find_path(Zint_INCLUDE_DIR zint.h)
find_library(Zint_LIBRARY zint)
mark_as_advanced(Zint_INCLUDE_DIR Zint_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Zint REQUIRED_VARS Zint_LIBRARY Zint_INCLUDE_DIR)

if(Zint_FOUND AND NOT TARGET Zint::zint)
  add_library(Zint::zint UNKNOWN IMPORTED)
  set_target_properties(Zint::zint PROPERTIES
    IMPORTED_LOCATION "${Zint_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${Zint_INCLUDE_DIR}")
endif()
