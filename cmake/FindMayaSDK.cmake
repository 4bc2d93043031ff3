# Finds an installed Maya and makes the imported targets Maya::Foundation, Maya::OpenMaya,
# Maya::OpenMayaAnim and Maya::OpenMayaUI.
#
# Asked in this order: MAYA_LOCATION, DEVKIT_LOCATION as cache variables, then as environment
# variables (also MAYA_DEVKIT_ROOT, MAYA_DEVKIT_LOCATION), then the places Maya 2024 installs to.
# Sets MayaSDK_FOUND, MayaSDK_INCLUDE_DIR, MayaSDK_API_VERSION (such as 20240200).

set(MAYA_LOCATION "$ENV{MAYA_LOCATION}" CACHE PATH "Root of the Maya installation")
set(_devkit "$ENV{DEVKIT_LOCATION}")
foreach(variable MAYA_DEVKIT_ROOT MAYA_DEVKIT_LOCATION)
  if(NOT _devkit)
    set(_devkit "$ENV{${variable}}")
  endif()
endforeach()
set(DEVKIT_LOCATION "${_devkit}" CACHE PATH "Root of the unpacked devkit")

set(_maya_roots ${MAYA_LOCATION})
if(NOT MAYA_LOCATION)
  set(_maya_roots "C:/Program Files/Autodesk/Maya2024" /usr/autodesk/maya2024
                  /usr/autodesk/maya2024-x64 /Applications/Autodesk/maya2024)
endif()

set(_maya_header_roots)
if(DEVKIT_LOCATION)
  list(APPEND _maya_header_roots "${DEVKIT_LOCATION}/include")
endif()
foreach(root IN LISTS _maya_roots)
  # On macOS the root may be the installation or Maya.app/Contents inside it.
  list(APPEND _maya_header_roots "${root}/include" "${root}/devkit/include"
       "${root}/../../include" "${root}/../../devkit/include")
endforeach()
find_path(MayaSDK_INCLUDE_DIR maya/MFn.h PATHS ${_maya_header_roots} NO_DEFAULT_PATH)

set(_maya_library_roots)
if(DEVKIT_LOCATION)
  list(APPEND _maya_library_roots "${DEVKIT_LOCATION}/lib")
endif()
foreach(root IN LISTS _maya_roots)
  list(APPEND _maya_library_roots "${root}/lib" "${root}/Maya.app/Contents/MacOS" "${root}/MacOS")
endforeach()
set(_maya_library_variables)
foreach(name Foundation OpenMaya OpenMayaAnim OpenMayaUI)
  # Never the system's own paths: macOS has a framework called Foundation.
  find_library(MayaSDK_${name}_LIBRARY ${name} PATHS ${_maya_library_roots} NO_DEFAULT_PATH
               NO_CMAKE_SYSTEM_PATH)
  list(APPEND _maya_library_variables MayaSDK_${name}_LIBRARY)
endforeach()

if(MayaSDK_INCLUDE_DIR AND EXISTS "${MayaSDK_INCLUDE_DIR}/maya/MTypes.h")
  file(STRINGS "${MayaSDK_INCLUDE_DIR}/maya/MTypes.h" _maya_version_line
       REGEX "#define[ \t]+MAYA_API_VERSION[ \t]+[0-9]+" LIMIT_COUNT 1)
  string(REGEX MATCH "[0-9]+$" MayaSDK_API_VERSION "${_maya_version_line}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  MayaSDK
  REQUIRED_VARS MayaSDK_INCLUDE_DIR ${_maya_library_variables}
  VERSION_VAR MayaSDK_API_VERSION
  REASON_FAILURE_MESSAGE "Set MAYA_LOCATION to the installation and DEVKIT_LOCATION to the devkit")

if(MayaSDK_FOUND)
  set(_maya_definitions)
  if(UNIX AND NOT APPLE)
    # The string ABI of the installation's standard library, read from its own symbols.
    file(STRINGS "${MayaSDK_Foundation_LIBRARY}" _maya_new_abi REGEX "__cxx1112basic_string"
         LIMIT_COUNT 1)
    if(_maya_new_abi)
      set(_maya_definitions _GLIBCXX_USE_CXX11_ABI=1)
    else()
      set(_maya_definitions _GLIBCXX_USE_CXX11_ABI=0)
    endif()
  endif()
  foreach(name Foundation OpenMaya OpenMayaAnim OpenMayaUI)
    if(NOT TARGET Maya::${name})
      add_library(Maya::${name} UNKNOWN IMPORTED)
      set_target_properties(
        Maya::${name}
        PROPERTIES IMPORTED_LOCATION "${MayaSDK_${name}_LIBRARY}"
                   INTERFACE_INCLUDE_DIRECTORIES "${MayaSDK_INCLUDE_DIR}"
                   INTERFACE_COMPILE_DEFINITIONS "${_maya_definitions}")
    endif()
  endforeach()
  message(STATUS "Maya API ${MayaSDK_API_VERSION} in ${MayaSDK_INCLUDE_DIR}")
endif()
