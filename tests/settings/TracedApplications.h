// What tests of settings say of the traced applications.
#pragma once

#include "settings/AppSettings.h"

#include <string>

namespace carvelot::test {

// "a.exe+ b.exe- " for an enabled and a disabled one.
inline std::string Applications(const CAppSettings& settings) {
    std::string result;
    for (const tagTraceApp& app : settings.m_traceApps) {
        result += app.m_strName + (app.m_bEnabled ? "+ " : "- ");
    }
    return result;
}

} // namespace carvelot::test
