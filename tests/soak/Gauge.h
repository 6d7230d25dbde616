// Gauge.h - what a process holds at a moment, and whether it holds more and more.
#pragma once

#include <QString>

#include <vector>

namespace carvelot::soak {

struct CSample {
    double m_fSeconds = 0;  // since the start
    int m_nActions = 0;     // until then
    double m_fResident = 0; // MB of memory that is in place
    double m_fHeap = 0;     // MB in use by allocations; 0 where a sanitizer has them
    int m_nFiles = 0;       // open descriptors
    int m_nThreads = 0;
    int m_nWidgets = 0;
    int m_nObjects = 0; // below the application and its windows
};

// Gives free memory back to the system first.
CSample TakeSample();

// How many objects there are of each class below windows, for whoever looks for those that stayed.
QString CountedClasses();

// What a number of the samples gains over the last three quarters of them, by the straight line that fits
// best.
double Rise(const std::vector<CSample>& samples, double (*number)(const CSample&));

} // namespace carvelot::soak
