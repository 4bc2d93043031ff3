// Version of the API that these headers describe.
#pragma once

#include <maya/MApiNamespace.h>

#define MAYA_API_VERSION 20240200
#define MAYA_APP_VERSION 2024
