// The navigation database, the FMS and the GPS (XPLMNavigation).
//
// The database is read from the simulator's own data files under the system path:
//   Resources/default data/earth_nav.dat      NDBs, VORs, ILS parts, markers and DMEs
//   Resources/default data/earth_fix.dat      fixes
//   Resources/default scenery/default apt dat/Earth nav data/apt.dat    airports
// Each file's second line names its layout ("810 Version", "1100 Version", ...). A missing file adds
// nothing; a row that cannot be read is noted in Log.txt with the file and line number and skipped;
// a file whose version is unknown is noted and left out. Nothing in a file ever stops xpsim.
//
// The files are read on first use and again whenever the system path has changed since; reading
// them anew also empties the FMS, whose entries refer to the old database.
//
// A navaid's reference (XPLMNavRef) is its index in the database. The database holds the types in
// the order of their XPLMNavType bits (airports, NDBs, VORs, ILS localizers, localizers,
// glideslopes, outer, middle and inner markers, fixes, DMEs), each type in file order, so that
// every type is one contiguous run.
//
// What each entry holds:
//   height     the file's elevation in feet, as metres
//   frequency  as the file gives it: NDBs in kHz, the others in MHz x 100 (11030 for 110.30 MHz);
//              0 for markers, fixes and airports
//   heading    true degrees: a VOR's slaved variation, the localizer course of a localizer,
//              glideslope or marker (without the magnetic course or glideslope angle the file packs
//              into the same number); 0 for the rest
//   ID         the file's identifier; empty for markers (the file's "----"); an airport's code
//   name       the file's name; for the parts of an ILS "<airport> <runway> <name>"
//              ("KSEA 16R ILS-cat-I"), for a DME of an airport "<airport> <name>"
//
// The FMS holds 100 entries (0 to 99), each empty, a navaid (airport, fix, VOR or NDB) or a
// latitude/longitude point, with an altitude in feet. Its length is one past the last entry that is
// not empty. Clearing an entry moves the later ones up by one. The GPS flies to the FMS's destination
// entry.
#pragma once

#include <string>

#include "XPLMNavigation.h"
#include "world/Export.h"

namespace xpsim {

// The number of entries the FMS holds.
constexpr int kFmsEntries = 100;

struct Navaid {
    XPLMNavType type = xplm_Nav_Unknown;
    double latitude = 0.0;
    double longitude = 0.0;
    float height = 0.0f;  // metres above sea level
    int frequency = 0;
    float heading = 0.0f;
    std::string id;
    std::string name;
};

// ------------------------------------------------------------------ control interface

// Reads the data files under the current system path now and empties the FMS. Returns the number of
// database entries.
XPSIM_API int LoadNavigationData();
// The number of database entries (reading the files first if needed).
XPSIM_API int NavaidCount();

// ------------------------------------------------------------------ inside the library

// The entry of a reference, or null when there is none.
const Navaid* NavaidOf(XPLMNavRef ref);

XPLMNavRef FirstNavAid();
XPLMNavRef NextNavAid(XPLMNavRef ref);
XPLMNavRef FirstNavAidOfType(XPLMNavType type);
XPLMNavRef LastNavAidOfType(XPLMNavType type);
// The airport whose ID is `code` (ignoring case), or XPLM_NAV_NOT_FOUND.
XPLMNavRef FindAirportById(const std::string& code);
XPLMNavRef FindNavAid(const char* nameFragment, const char* idFragment, const float* latitude,
                      const float* longitude, const int* frequency, XPLMNavType types);
void GetNavAidInfo(XPLMNavRef ref, XPLMNavType* type, float* latitude, float* longitude, float* height,
                   int* frequency, float* heading, char* id, char* name, char* reg);

int CountFmsEntries();
int DisplayedFmsEntry();
int DestinationFmsEntry();
void SetDisplayedFmsEntry(int index);
void SetDestinationFmsEntry(int index);
void GetFmsEntryInfo(int index, XPLMNavType* type, char* id, XPLMNavRef* ref, int* altitude, float* latitude,
                     float* longitude);
void SetFmsEntryInfo(int index, XPLMNavRef ref, int altitude);
void SetFmsEntryLatLon(int index, float latitude, float longitude, int altitude);
void ClearFmsEntry(int index);
XPLMNavType GpsDestinationType();
XPLMNavRef GpsDestination();

// Forgets the database and the FMS.
void ResetNavigation();

}  // namespace xpsim
