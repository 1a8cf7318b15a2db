// sparlane: a database of plasma-cutting process parameters.
//
// One question, answered fast and exactly: with which settings do I cut this
// material, this thick, on this machine?  A host builds a Database in memory
// or loads a parameter file, then asks for records, interpolated settings and
// planning figures.
//
// Conventions
//  - Every fallible Database operation returns an ErrorCode and, on failure,
//    replaces the last-error message (GetLastError).  Success never clears it.
//  - Queries and calculators never fail: they return empty or zero results.
//  - Nothing returned refers into the database; records and lists are copies.
//  - Floats are single precision; lengths in mm, speeds in mm/min, times in
//    seconds, currents in whole amperes.
//  - Threads: concurrent const calls on one Database are safe while no thread
//    loads, creates, edits or closes it.  The library takes no locks.
//    Static calculators and Testing functions are safe on any thread.
//
// This header includes the whole interface; each part has its own header:
//   export.h       SPARLANE_API (shared with the C header c.h)
//   version.h      the version macros
//   records.h      CuttingParameter, ErrorCode, flag bits
//   file_header.h  FileHeader, CompressionType, the file magic
//   results.h      query, metrics and statistics results
//   calculators.h  the calculators' input and result records
//   database.h     Database
//   testing.h      the Testing primitives
#ifndef SPARLANE_SPARLANE_H_
#define SPARLANE_SPARLANE_H_

#include "sparlane/calculators.h"
#include "sparlane/database.h"
#include "sparlane/export.h"
#include "sparlane/file_header.h"
#include "sparlane/records.h"
#include "sparlane/results.h"
#include "sparlane/testing.h"
#include "sparlane/version.h"

#endif  // SPARLANE_SPARLANE_H_
