#include "parse/ForeignMonths.h"

#include "parse/Dialects.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

namespace carvelot::test {

namespace {

constexpr std::array<std::string_view, 12> kEnglish = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct Language {
    const char* name;
    const char* months;     // as the CLDR writes them within a date
    const char* inCapitals; // without dots
};

constexpr Language kLanguages[] = {
    {"English", "Jan Feb Mar Apr May Jun Jul Aug Sept Oct Nov Dec",
     "JAN FEB MAR APR MAY JUN JUL AUG SEPT OCT NOV DEC"},
    {"Danish", "jan. feb. mar. apr. maj jun. jul. aug. sep. okt. nov. dec.",
     "JAN FEB MAR APR MAJ JUN JUL AUG SEP OKT NOV DEC"},
    {"Dutch", "jan. feb. mrt. apr. mei jun. jul. aug. sep. okt. nov. dec.",
     "JAN FEB MRT APR MEI JUN JUL AUG SEP OKT NOV DEC"},
    {"Finnish",
     "tammik. helmik. maalisk. huhtik. toukok. kesäk. heinäk. elok. syysk. lokak. marrask. jouluk.",
     "TAMMIK HELMIK MAALISK HUHTIK TOUKOK KESÄK HEINÄK ELOK SYYSK LOKAK MARRASK JOULUK"},
    {"Finnish by itself", "tammi helmi maalis huhti touko kesä heinä elo syys loka marras joulu",
     "TAMMI HELMI MAALIS HUHTI TOUKO KESÄ HEINÄ ELO SYYS LOKA MARRAS JOULU"},
    {"French", "janv. févr. mars avr. mai juin juil. août sept. oct. nov. déc.",
     "JANV FÉVR MARS AVR MAI JUIN JUIL AOÛT SEPT OCT NOV DÉC"},
    {"French of Canada", "janv. févr. mars avr. mai juin juill. août sept. oct. nov. déc.",
     "JANV FÉVR MARS AVR MAI JUIN JUILL AOÛT SEPT OCT NOV DÉC"},
    {"German", "Jan. Feb. März Apr. Mai Juni Juli Aug. Sept. Okt. Nov. Dez.",
     "JAN FEB MÄRZ APR MAI JUNI JULI AUG SEPT OKT NOV DEZ"},
    {"German by itself", "Jan Feb Mär Apr Mai Jun Jul Aug Sep Okt Nov Dez",
     "JAN FEB MÄR APR MAI JUN JUL AUG SEP OKT NOV DEZ"},
    {"German of Austria", "Jän. Feb. März Apr. Mai Juni Juli Aug. Sep. Okt. Nov. Dez.",
     "JÄN FEB MÄRZ APR MAI JUNI JULI AUG SEP OKT NOV DEZ"},
    {"Italian", "gen feb mar apr mag giu lug ago set ott nov dic",
     "GEN FEB MAR APR MAG GIU LUG AGO SET OTT NOV DIC"},
    {"Norwegian", "jan. feb. mars apr. mai juni juli aug. sep. okt. nov. des.",
     "JAN FEB MARS APR MAI JUNI JULI AUG SEP OKT NOV DES"},
    {"Norwegian by itself", "jan feb mar apr mai jun jul aug sep okt nov des",
     "JAN FEB MAR APR MAI JUN JUL AUG SEP OKT NOV DES"},
    {"Portuguese", "jan. fev. mar. abr. mai. jun. jul. ago. set. out. nov. dez.",
     "JAN FEV MAR ABR MAI JUN JUL AGO SET OUT NOV DEZ"},
    {"Spanish", "ene feb mar abr may jun jul ago sept oct nov dic",
     "ENE FEB MAR ABR MAY JUN JUL AGO SEP OCT NOV DIC"},
    {"Swedish", "jan. feb. mars apr. maj juni juli aug. sep. okt. nov. dec.",
     "JAN FEB MARS APR MAJ JUNI JULI AUG SEP OKT NOV DEC"},
    {"Czech", "led úno bře dub kvě čvn čvc srp zář říj lis pro",
     "LED ÚNO BŘE DUB KVĚ ČVN ČVC SRP ZÁŘ ŘÍJ LIS PRO"},
    {"Greek", "Ιαν Φεβ Μαρ Απρ Μαΐ Ιουν Ιουλ Αυγ Σεπ Οκτ Νοε Δεκ",
     "ΙΑΝ ΦΕΒ ΜΑΡ ΑΠΡ ΜΑΪ ΙΟΥΝ ΙΟΥΛ ΑΥΓ ΣΕΠ ΟΚΤ ΝΟΕ ΔΕΚ"},
    {"Greek by itself", "Ιαν Φεβ Μάρ Απρ Μάι Ιούν Ιούλ Αύγ Σεπ Οκτ Νοέ Δεκ",
     "ΙΑΝ ΦΕΒ ΜΆΡ ΑΠΡ ΜΆΙ ΙΟΎΝ ΙΟΎΛ ΑΎΓ ΣΕΠ ΟΚΤ ΝΟΈ ΔΕΚ"},
    {"Hungarian", "jan. febr. márc. ápr. máj. jún. júl. aug. szept. okt. nov. dec.",
     "JAN FEBR MÁRC ÁPR MÁJ JÚN JÚL AUG SZEPT OKT NOV DEC"},
    {"Polish", "sty lut mar kwi maj cze lip sie wrz paź lis gru",
     "STY LUT MAR KWI MAJ CZE LIP SIE WRZ PAŹ LIS GRU"},
    {"Russian", "янв. февр. мар. апр. мая июн. июл. авг. сент. окт. нояб. дек.",
     "ЯНВ ФЕВР МАР АПР МАЯ ИЮН ИЮЛ АВГ СЕНТ ОКТ НОЯБ ДЕК"},
    {"Russian by itself", "янв. февр. март апр. май июнь июль авг. сент. окт. нояб. дек.",
     "ЯНВ ФЕВР МАРТ АПР МАЙ ИЮНЬ ИЮЛЬ АВГ СЕНТ ОКТ НОЯБ ДЕК"},
    {"Turkish", "Oca Şub Mar Nis May Haz Tem Ağu Eyl Eki Kas Ara",
     "OCA ŞUB MAR NİS MAY HAZ TEM AĞU EYL EKİ KAS ARA"},
    {"Chinese and Japanese", "1月 2月 3月 4月 5月 6月 7月 8月 9月 10月 11月 12月",
     "01月 02月 03月 04月 05月 06月 07月 08月 09月 10月 11月 12月"},
    {"Korean", "1월 2월 3월 4월 5월 6월 7월 8월 9월 10월 11월 12월",
     "01월 02월 03월 04월 05월 06월 07월 08월 09월 10월 11월 12월"},
};

std::vector<std::string> Words(const char* text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

} // namespace

TEST(ForeignMonths, AreKnownWithTheDotAndWithoutAndInAnyCase) {
    for (const Language& language : kLanguages) {
        const std::vector<std::string> months = Words(language.months);
        const std::vector<std::string> capitals = Words(language.inCapitals);
        ASSERT_EQ(months.size(), kEnglish.size()) << language.name;
        ASSERT_EQ(capitals.size(), kEnglish.size()) << language.name;
        for (std::size_t i = 0; i < kEnglish.size(); ++i) {
            std::string bare = months[i];
            if (bare.ends_with('.')) {
                bare.pop_back();
            }
            EXPECT_EQ(EnglishMonth(months[i]), kEnglish[i]) << language.name << ' ' << months[i];
            EXPECT_EQ(EnglishMonth(bare), kEnglish[i]) << language.name << ' ' << bare;
            EXPECT_EQ(EnglishMonth(capitals[i]), kEnglish[i]) << language.name << ' ' << capitals[i];
            if (!capitals[i].ends_with("月") && !capitals[i].ends_with("월")) {
                EXPECT_EQ(EnglishMonth(bare + '.'), kEnglish[i]) << language.name << ' ' << bare;
                EXPECT_EQ(EnglishMonth(capitals[i] + '.'), kEnglish[i])
                    << language.name << ' ' << capitals[i];
            }
        }
    }
}

TEST(ForeignMonths, AreNoOtherWords) {
    for (const char* word :
         {"",         ".",         "..",
          "J",        "anF",       "Janu",
          "jan..",    ".jan",      "mä",
          "märz.z",   "0月",       "13月",
          "月",       "1월x",      "x1월",
          "001月",    "1",         "12",
          "м",        "JanFeb",    "janv..",
          "m\xE4r",   "m\xE4rz",   "\xFF",
          "\xE6\x9C", "1\xE6\x9C", "a word that is far longer than the name of any month"}) {
        EXPECT_EQ(EnglishMonth(word), "") << word;
    }
}

} // namespace carvelot::test
