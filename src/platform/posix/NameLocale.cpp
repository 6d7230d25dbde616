#include "platform/NameLocale.h"

#include <locale.h>

namespace carvelot::platform {

namespace {

locale_t Utf8() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

} // namespace

Utf8Names::Utf8Names() {
    if (Utf8() != nullptr) {
        m_pBefore = uselocale(Utf8());
    }
}

Utf8Names::~Utf8Names() {
    if (m_pBefore != nullptr) {
        uselocale(static_cast<locale_t>(m_pBefore));
    }
}

} // namespace carvelot::platform
