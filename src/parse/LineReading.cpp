#include "parse/LineReading.h"

#include "parse/ForeignMonths.h"
#include "platform/CodePage.h"

namespace carvelot {

void CLineReading::ForgetNotes() {
    m_helpful = {};
    m_refused = {};
    m_bytes = {};
}

bool CLineReading::AsksFor(Dialect dialect) {
    if (m_dialects.Has(dialect)) {
        return true;
    }
    m_helpful.Add(dialect);
    return false;
}

std::string_view CLineReading::ForeignMonth(std::string_view word, std::string_view bytes) {
    std::string_view month = EnglishMonth(word);
    if (month.empty() && bytes != word) {
        month = EnglishMonth(bytes);
    }
    return !month.empty() && AsksFor(Dialect::Months) ? month : std::string_view{};
}

std::string_view CLineReading::ConvertedTextOf(const LogLine& line) {
    const std::string_view text = platform::BytesToUtf8(line.bytes, m_strConverted);
    (text.data() == line.bytes.data() ? m_bytes.utf8 : m_bytes.codePage) = true;
    return text;
}

} // namespace carvelot
