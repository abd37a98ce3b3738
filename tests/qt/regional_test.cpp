#include <gtest/gtest.h>

#include "platform/pattern_regional.h"
#include "platform/qt/qt_regional.h"
#include "tests/support/failure_of.h"

using namespace velmora;
using namespace std::chrono;

TEST(Regional, EveryRegionReadsWhatItWrites) {
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
        const PatternRegional regional(qt::regionalForm(locale));
        for (const auto& date : {2026y / 3 / 5, 1999y / 12 / 31, 2000y / 11 / 1, 101y / 1 / 11}) {
            const std::string text = regional.shortDate(date);
            ASSERT_EQ(regional.toDateTime(text), DateTime{date})
                << locale.name().toStdString() << " " << text;
        }
        for (const seconds time : {0s, 45000s, 3723s, 86399s}) {
            const std::string text = regional.longTime(time);
            ASSERT_EQ(regional.toDateTime(text), (DateTime{.time = time}))
                << locale.name().toStdString() << " " << text;
            const DateTime both{2026y / 12 / 25, time};
            ASSERT_EQ(regional.toDateTime(regional.text(both)), both) << regional.text(both);
        }
    }
}

TEST(Regional, RegionsWriteTheirOwnWayWithTheWholeYear) {
    struct Case {
        const char* locale;
        const char* text;
    };
    const DateTime value{2026y / 3 / 5, 13h + 4min + 9s};
    for (const auto& [name, text] :
         {Case{"en_US", "3/5/2026 1:04:09 PM"}, Case{"en_GB", "05/03/2026 13:04:09"},
          Case{"de_DE", "05.03.2026 13:04:09"}, Case{"sv_SE", "2026-03-05 13:04:09"},
          Case{"C", "5 Mar 2026 13:04:09"}, Case{"ar_EG", "5/3/2026 1:04:09 م"},
          Case{"zh_TW", "2026/3/5 下午1:04:09"}}) {
        std::string written =
            PatternRegional(qt::regionalForm(QLocale(QString::fromLatin1(name)))).text(value);
        for (const std::string_view mark : {"\u200f", "\u200e"}) {  // of direction, which can't be seen
            for (auto at = written.find(mark); at != std::string::npos; at = written.find(mark))
                written.erase(at, mark.size());
        }
        EXPECT_EQ(written, text) << name;
    }
    const PatternRegional american;
    EXPECT_EQ(american.text({.date = value.date}), "3/5/2026");
    EXPECT_EQ(american.text({.time = value.time}), "1:04:09 PM");
}

TEST(Regional, OrderOfDayAndMonthIsTheRegionsAndWhatAllReadIsReadEverywhere) {
    const PatternRegional british({.datePattern = "dd/MM/yyyy", .timePattern = "HH:mm:ss"});
    EXPECT_EQ(british.toDateTime("5/3/2026").date, 2026y / 3 / 5);
    EXPECT_EQ(british.toDateTime("3/25/2026").date, 2026y / 3 / 25);  // no day of a 25th month
    EXPECT_EQ(british.toDateTime(" 2026-03-05 1:30 pm ").time, 13h + 30min);
    EXPECT_EQ(PatternRegional().toDateTime("5/3/2026").date, 2026y / 5 / 3);
    for (const char* text : {"", "@", "5/3/26", "32/1/2026", "5/3/2026x", "5/3/202610:00:00", "24:00:00",
                             "10:60:00", "-5/3/2026", "5/3/2026 at 10:00:00"})
        EXPECT_EQ(failureOf([&] { british.toDateTime(text); }), errors::typeMismatch) << text;
}

TEST(Regional, PatternThatLeavesAnythingOutGivesWayToOneThatDoesNot) {
    const PatternRegional broken(
        {.datePattern = "d.M.", .timePattern = "h:mm", .months = {}, .am = {}, .pm = {}});
    EXPECT_EQ(broken.text({2026y / 3 / 5, 4h}), "2026-03-05 04:00:00");
    const PatternRegional quoted({.datePattern = "d''M'd'y", .timePattern = "HH'h'mm'm'ss"});
    EXPECT_EQ(quoted.text({2026y / 3 / 5, 4h}), "5'3d2026 04h00m00");
}
