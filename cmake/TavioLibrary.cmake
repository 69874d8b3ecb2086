# The libraries' targets for applications.

# One target that builds all of them.
add_custom_target(tavio_offered)

# tavio_library(<name> FOLDER <folder> HEADERS <file>... [LINKS <name>...] [NEEDS <target>...]
#               [KEEPS <symbol>] [HOLDS <name>] [ALWAYS_STATIC])
#
# The target tavio_<name> has been made by add_library(... STATIC ...). It is the whole library, for
# the programs and tests of this project, which call inner functions too. Others link Tavio::<name>:
# the same target, or with BUILD_SHARED_LIBS a second one of the same object files, which exports
# what the public headers declare and nothing else.
#
# HEADERS: the public ones, in the folder by which they are included
# LINKS: libraries of this project that the headers need
# NEEDS: other libraries, which no public header includes
# KEEPS: a symbol of the library that is linked in even if a program does not name it
# HOLDS: a library of this project whose inner functions it calls. A shared library exports no inner
#   functions, so this one has copies of its own; none of them may use module-wide state.
# ALWAYS_STATIC: for a library without state, of which a process may have several copies
function(tavio_library name)
  cmake_parse_arguments(ARG "ALWAYS_STATIC" "FOLDER;KEEPS;HOLDS" "HEADERS;LINKS;NEEDS" ${ARGN})
  set(suffixes "")
  if(BUILD_SHARED_LIBS)
    set(suffixes _offered)
    tavio_add_offered(${name} ${ARG_ALWAYS_STATIC})
  endif()
  set(offered tavio_${name}${suffixes})
  foreach(suffix IN LISTS suffixes ITEMS "")
    set(target tavio_${name}${suffix})
    set(links ${ARG_LINKS})
    list(TRANSFORM links REPLACE ".+" "tavio_\\0${suffix}")
    target_link_libraries(${target} PUBLIC ${links} Threads::Threads PRIVATE ${ARG_NEEDS})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${TAVIO_INCLUDE_FOLDER}>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    if(ARG_KEEPS AND suffix)
      # Else the linker drops a shared library that comes before the only one that needs it.
      target_link_options(${target} INTERFACE "LINKER:--no-as-needed")
    elseif(ARG_KEEPS)
      target_link_options(${target} INTERFACE "LINKER:-u,${ARG_KEEPS}")
    endif()
    string(REPLACE _ - output tavio-${name})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} EXPORT_NAME ${name})
  endforeach()
  if(ARG_HOLDS AND BUILD_SHARED_LIBS)
    target_link_libraries(${offered} PRIVATE tavio_${ARG_HOLDS})
    target_link_options(${offered} PRIVATE "LINKER:--exclude-libs,ALL")
  endif()
  tavio_compile(tavio_${name})
  tavio_precompile(tavio_${name})
  # Only what is marked TAVIO_API can be seen from outside a shared library.
  set_target_properties(tavio_${name} PROPERTIES
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  list(TRANSFORM ARG_HEADERS PREPEND "${TAVIO_INCLUDE_FOLDER}/${ARG_FOLDER}/")
  target_sources(${offered} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${TAVIO_INCLUDE_FOLDER}" FILES ${ARG_HEADERS})
  add_library(Tavio::${name} ALIAS ${offered})
  set_property(GLOBAL APPEND PROPERTY TAVIO_OFFERED ${offered})
  add_dependencies(tavio_offered ${offered})
endfunction()

# tavio_add_offered(<name> <whether it is static>): tavio_<name>_offered, of the object files of
# tavio_<name>.
function(tavio_add_offered name is_static)
  set(target tavio_${name}_offered)
  if(is_static)
    add_library(${target} STATIC $<TARGET_OBJECTS:tavio_${name}>)
    # The other archive has the same name.
    set_target_properties(${target} PROPERTIES
      ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/offered")
  else()
    add_library(${target} SHARED $<TARGET_OBJECTS:tavio_${name}>)
    set(script "${PROJECT_SOURCE_DIR}/cmake/exported.map")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    set_target_properties(${target} PROPERTIES
      SOVERSION ${PROJECT_VERSION_MAJOR} VERSION ${PROJECT_VERSION} LINK_DEPENDS "${script}")
  endif()
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()
