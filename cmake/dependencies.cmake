# What the project links. Everything here is a Debian 12 package (tools/build/install_packages.sh).

find_package(Threads REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network)

if(TORVEL_SDK STREQUAL "host")
  # The system's interpreter: a version manager may put another one first on PATH, without the
  # PySide2 that belongs to the system's Qt.
  if(NOT DEFINED Python3_EXECUTABLE AND EXISTS /usr/bin/python3)
    set(Python3_EXECUTABLE /usr/bin/python3)
  endif()
  set(Python3_FIND_VIRTUALENV STANDARD)
  set(Python3_FIND_STRATEGY LOCATION)
  find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter Development.Embed)

  # Without its chatter: Debian's package names a Python binding that is packaged apart, unused here.
  set(CMAKE_MESSAGE_LOG_LEVEL WARNING)
  find_package(Imath 3 REQUIRED)
  unset(CMAKE_MESSAGE_LOG_LEVEL)
  find_package(TBB REQUIRED)
  find_package(fmt REQUIRED)
  find_package(CLI11 REQUIRED)
  if(TORVEL_TESTS)
    find_package(GTest REQUIRED)
  endif()
  if(TORVEL_BENCH)
    find_package(benchmark REQUIRED)
  endif()
endif()
