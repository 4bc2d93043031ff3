#pragma once

#include <maya/MObject.h>

/// Runs a Python text whose last expression names a new curve's transform and returns that node;
/// null, with an error line, when there is none of that name.
MObject curveFromScript(const char* script);
