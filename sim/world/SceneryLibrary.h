// The scenery library: virtual paths that scenery packages export in their library.txt files
// (XPLMLookupObjects).
//
// The packages are the folders of Custom Scenery/ and of Resources/default scenery/ that hold a
// library.txt. Custom packages come first, in the order of Custom Scenery/scenery_packs.ini when it
// exists (its SCENERY_PACK rows, highest priority first; SCENERY_PACK_DISABLED rows leave a package
// out; packages it does not list come before the listed ones, in name order) and otherwise in name
// order; the default scenery's packages follow in name order. Names are compared byte by byte.
//
// A library.txt starts with "I" or "A", "800" and "LIBRARY"; then one command a line:
//   EXPORT VIRTUAL REAL            the package's file REAL (relative to the package) for VIRTUAL
//   EXPORT_RATIO RATIO VIRTUAL REAL    the same, with a weight (a number above 0)
//   EXPORT_EXTEND VIRTUAL REAL     adds to what lower-priority packages export for VIRTUAL
//   EXPORT_EXCLUDE VIRTUAL REAL    like EXPORT; lower-priority packages' exports of VIRTUAL are left
//                                  out everywhere, even outside this row's region
//   EXPORT_BACKUP VIRTUAL REAL     used only where no package exports VIRTUAL otherwise
//   REGION_DEFINE NAME / REGION_RECT WEST SOUTH EAST NORTH    a region of the package: the union of
//                                  its rectangles of whole-degree tiles (edges included)
//   REGION NAME / REGION_ALL       the exports that follow apply in that region / everywhere
// REAL may hold spaces; '\' reads as '/'. PUBLIC, PRIVATE, DEPRECATED and SEMI_DEPRECATED rows are
// taken as they are; REGION_BITMAP and REGION_DREF are not read. A row that cannot be read (or
// whose file is missing) is noted in Log.txt with the file and line number and skipped; a file
// without the header is noted and not read.
//
// A lookup at a latitude and longitude goes down the packages from the highest priority: a
// package's exports of the path whose region holds the point are found; once a package has found
// one with EXPORT, EXPORT_RATIO or EXPORT_EXCLUDE (or has any EXPORT_EXCLUDE of the path), the
// packages below are not looked at. When nothing was found, the first package (within the same
// reach) with backups of the path for the point gives them. Each real file is given once, as a
// path relative to the simulator folder, in package order and then file order.
//
// The files are read on the first lookup and again whenever the system path changes.
#pragma once

#include <string>
#include <vector>

#include "XPLMScenery.h"
#include "world/Export.h"

namespace xpsim {

// ------------------------------------------------------------------ control interface

// Reads the packages' library.txt files under the current system path now; returns the number of
// export rows read.
XPSIM_API int LoadSceneryLibrary();
// The package folders with a library.txt, relative to the simulator folder, highest priority first.
XPSIM_API std::vector<std::string> SceneryPackages();
// The real files for a virtual path at a place, as XPLMLookupObjects gives them.
XPSIM_API std::vector<std::string> LookupLibraryPath(const std::string& path, double latitude, double longitude);

// ------------------------------------------------------------------ inside the library

int LookupObjects(const char* path, float latitude, float longitude, XPLMLibraryEnumerator_f enumerator, void* ref);
void ResetSceneryLibrary();

}  // namespace xpsim
