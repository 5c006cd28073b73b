// Oru::files: settings files (descriptions and values) and the words behind
// failed checks, built on the public API of the model.
#ifndef LEGACY_ORU_FILES_FILES_H
#define LEGACY_ORU_FILES_FILES_H

#include <legacy/oru/files/check.h>
#include <legacy/oru/files/description.h>
#include <legacy/oru/files/explain.h>
#include <legacy/oru/files/problem.h>
#include <legacy/oru/files/values.h>

#endif
