#include "parse/ForeignMonths.h"

#include "platform/CaseFold.h"
#include "text/Integers.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace carvelot {

namespace {

constexpr std::array<std::string_view, 12> kEnglish = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct MonthName {
    std::string_view folded;
    std::size_t month; // from 0 on
};

// The abbreviations of the Unicode CLDR, those within a date and those that stand alone, of a language and
// its regions; folded as Folded below does it, each name once.
constexpr auto kNames = [] {
    std::array names = std::to_array<MonthName>({
        // English, Danish, Dutch, Norwegian, Swedish
        {"JAN", 0},
        {"FEB", 1},
        {"MAR", 2},
        {"MARS", 2},
        {"MRT", 2},
        {"APR", 3},
        {"MAY", 4},
        {"MAJ", 4},
        {"MAI", 4},
        {"MEI", 4},
        {"JUN", 5},
        {"JUNI", 5},
        {"JUL", 6},
        {"JULI", 6},
        {"AUG", 7},
        {"SEP", 8},
        {"SEPT", 8},
        {"OCT", 9},
        {"OKT", 9},
        {"NOV", 10},
        {"DEC", 11},
        {"DES", 11},
        // German
        {"JÄN", 0},
        {"MÄR", 2},
        {"MÄRZ", 2},
        {"DEZ", 11},
        // French
        {"JANV", 0},
        {"FÉVR", 1},
        {"AVR", 3},
        {"JUIN", 5},
        {"JUIL", 6},
        {"JUILL", 6},
        {"AOÛT", 7},
        {"DÉC", 11},
        // Italian, Portuguese, Spanish
        {"GEN", 0},
        {"ENE", 0},
        {"FEV", 1},
        {"ABR", 3},
        {"MAG", 4},
        {"GIU", 5},
        {"LUG", 6},
        {"AGO", 7},
        {"SET", 8},
        {"OTT", 9},
        {"OUT", 9},
        {"DIC", 11},
        // Finnish
        {"TAMMI", 0},
        {"TAMMIK", 0},
        {"HELMI", 1},
        {"HELMIK", 1},
        {"MAALIS", 2},
        {"MAALISK", 2},
        {"HUHTI", 3},
        {"HUHTIK", 3},
        {"TOUKO", 4},
        {"TOUKOK", 4},
        {"KESÄ", 5},
        {"KESÄK", 5},
        {"HEINÄ", 6},
        {"HEINÄK", 6},
        {"ELO", 7},
        {"ELOK", 7},
        {"SYYS", 8},
        {"SYYSK", 8},
        {"LOKA", 9},
        {"LOKAK", 9},
        {"MARRAS", 10},
        {"MARRASK", 10},
        {"JOULU", 11},
        {"JOULUK", 11},
        // Czech
        {"LED", 0},
        {"ÚNO", 1},
        {"BŘE", 2},
        {"DUB", 3},
        {"KVĚ", 4},
        {"ČVN", 5},
        {"ČVC", 6},
        {"SRP", 7},
        {"ZÁŘ", 8},
        {"ŘÍJ", 9},
        {"LIS", 10}, // and Polish
        {"PRO", 11},
        // Hungarian
        {"FEBR", 1},
        {"MÁRC", 2},
        {"ÁPR", 3},
        {"MÁJ", 4},
        {"JÚN", 5},
        {"JÚL", 6},
        {"SZEPT", 8},
        // Polish
        {"STY", 0},
        {"LUT", 1},
        {"KWI", 3},
        {"CZE", 5},
        {"LIP", 6},
        {"SIE", 7},
        {"WRZ", 8},
        {"PAŹ", 9},
        {"GRU", 11},
        // Turkish
        {"OCA", 0},
        {"ŞUB", 1},
        {"NIS", 3},
        {"HAZ", 5},
        {"TEM", 6},
        {"AĞU", 7},
        {"EYL", 8},
        {"EKI", 9},
        {"KAS", 10},
        {"ARA", 11},
        // Greek
        {"ΙΑΝ", 0},
        {"ΦΕΒ", 1},
        {"ΜΑΡ", 2},
        {"ΑΠΡ", 3},
        {"ΜΑΙ", 4},
        {"ΙΟΥΝ", 5},
        {"ΙΟΥΛ", 6},
        {"ΑΥΓ", 7},
        {"ΣΕΠ", 8},
        {"ΟΚΤ", 9},
        {"ΝΟΕ", 10},
        {"ΔΕΚ", 11},
        // Russian
        {"ЯНВ", 0},
        {"ФЕВР", 1},
        {"МАР", 2},
        {"МАРТ", 2},
        {"АПР", 3},
        {"МАЙ", 4},
        {"МАЯ", 4},
        {"ИЮН", 5},
        {"ИЮНЬ", 5},
        {"ИЮЛ", 6},
        {"ИЮЛЬ", 6},
        {"АВГ", 7},
        {"СЕНТ", 8},
        {"ОКТ", 9},
        {"НОЯБ", 10},
        {"ДЕК", 11},
    });
    std::sort(names.begin(), names.end(),
              [](const MonthName& a, const MonthName& b) { return a.folded < b.folded; });
    return names;
}();

// A number from 1 to 12 with a suffix is a month of Chinese and Japanese, or of Korean.
constexpr std::array<std::string_view, 2> kSuffixes = {"月", "월"};

constexpr std::size_t kLongestName = 24; // in bytes, and more than any name has

// Upper case, and without the accents that Greek and Turkish capitals have or lack.
char32_t Folded(char32_t c) {
    switch (c) {
    case U'İ':
        return U'I';
    case U'Ί':
    case U'ί':
    case U'Ϊ':
    case U'ϊ':
    case U'ΐ':
        return U'Ι';
    case U'Ά':
    case U'ά':
        return U'Α';
    case U'Έ':
    case U'έ':
        return U'Ε';
    case U'Ύ':
    case U'ύ':
        return U'Υ';
    default:
        return platform::ToUpper(c);
    }
}

std::size_t NumberedMonth(std::string_view word) {
    std::size_t number = 0;
    std::size_t digits = 0;
    while (digits < 2 && digits < word.size() && IsDigit(word[digits])) {
        number = number * 10 + static_cast<std::size_t>(word[digits++] - '0');
    }
    const std::string_view suffix = word.substr(digits);
    const bool isMonth =
        number <= 12 && std::find(kSuffixes.begin(), kSuffixes.end(), suffix) != kSuffixes.end();
    return isMonth ? number : 0;
}

} // namespace

std::string_view EnglishMonth(std::string_view word) {
    if (word.size() > kLongestName) {
        return {};
    }
    if (const std::size_t number = NumberedMonth(word); number > 0) {
        return kEnglish[number - 1];
    }
    if (word.ends_with('.')) {
        word.remove_suffix(1);
    }
    std::string folded;
    while (!word.empty()) {
        AppendCodePoint(folded, Folded(TakeCodePoint(word)));
    }
    const auto found =
        std::lower_bound(kNames.begin(), kNames.end(), std::string_view(folded),
                         [](const MonthName& name, std::string_view wanted) { return name.folded < wanted; });
    return found != kNames.end() && found->folded == folded ? kEnglish[found->month] : std::string_view{};
}

} // namespace carvelot
