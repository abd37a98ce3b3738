#include "base/conversions.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failure_of.h"

namespace velmora {
namespace {

using std::chrono::day;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::month;
using std::chrono::seconds;
using std::chrono::year;

TEST(Integers, AreReadAndRoundedToEven) {
    const struct {
        const char* text;
        int value;
    } cases[] = {{"0", 0},           {" 5\t", 5},         {"+7", 7},       {"-32768", -32768},
                 {"32767.4", 32767}, {"0.5", 0},          {"1.5", 2},      {"2.5", 2},
                 {"-2.5", -2},       {"2.50001", 3},      {"-3.5", -4},    {".6", 1},
                 {"7.", 7},          {"1e3", 1000},       {"12E-1", 1},    {"0.00001e+5", 1},
                 {"000000012", 12},  {"1e-999999999", 0}, {"0e999999", 0}, {"-32768.5", -32768}};
    for (const auto& [text, value] : cases) EXPECT_EQ(toInteger16(text), value) << text;
}

TEST(Integers, FailOutsideSixteenBitsAndForOtherTexts) {
    for (const char* text :
         {"32768", "32767.5", "-32769", "1e5", "99999999999999999999", "1e99999999999999"}) {
        EXPECT_EQ(failureOf([&] { toInteger16(text); }), 6) << text;
    }
    for (const char* text : {"", " ", "-", ".", "Error!", "5x", "1e", "1e+", "e5", "1 2", "--1", "inf", "nan",
                             "1.2.3", "0x10"}) {
        EXPECT_EQ(failureOf([&] { toInteger16(text); }), 13) << text;
    }
}

TEST(Booleans, AreWordsInAnyCaseOrNumbers) {
    for (const char* text : {"True", "tRUE", " true ", "-1", "0.1", "1e3"})
        EXPECT_TRUE(toBoolean(text)) << text;
    for (const char* text : {"False", "FALSE", "0", "-0.0", "0e5"}) EXPECT_FALSE(toBoolean(text)) << text;
    for (const char* text : {"", "Error!", "Yes", "True!"}) {
        EXPECT_EQ(failureOf([&] { toBoolean(text); }), 13) << text;
    }
    EXPECT_TRUE(toBoolean(booleanText(true)));
    EXPECT_FALSE(toBoolean(booleanText(false)));
}

TEST(Dates, AreReadInEveryForm) {
    const auto leapDay = year{2000} / month{2} / day{29};
    const auto time = hours{15} + minutes{4} + seconds{5};
    const struct {
        const char* text;
        DateTime value;
    } cases[] = {
        {"2000-02-29", {leapDay, {}}},
        {" 2/29/2000 ", {leapDay, {}}},
        {"29 Feb 2000", {leapDay, {}}},
        {"0100-01-01", {year{100} / month{1} / day{1}, {}}},
        {"9999-12-31", {year{9999} / month{12} / day{31}, {}}},
        {"15:04:05", {DateTime::dayZero, time}},
        {"3:04:05 PM", {DateTime::dayZero, time}},
        {"12:00am", {DateTime::dayZero, seconds{0}}},
        {"12:30 pm", {DateTime::dayZero, hours{12} + minutes{30}}},
        {"9:05", {DateTime::dayZero, hours{9} + minutes{5}}},
        {"2000-02-29 15:04:05", {leapDay, time}},
        {"29 feb 2000 3:04:05 PM", {leapDay, time}},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(toDateTime(text), value) << text;
}

TEST(Dates, FailForDaysThatAreNoneAndForOtherTexts) {
    for (const char* date :
         {"1900-02-29", "2001-02-29", "2000-13-01", "2000-00-10", "2000-04-31", "0099-01-01", "10000-01-01",
          "2000-1", "29 Foo 2000", "-2000-01-01", "2000-02-28 nonsense", "2000-02-28 25:00"})
        EXPECT_EQ(failureOf([&] { toDateTime(date); }), 13) << date;
    for (const char* time : {"", "Error!", "24:00", "12:60", "12:00:60", "0:10 AM", "13:00 PM", "12", "am",
                             ":", "1:2:3:4", "+1:00"})
        EXPECT_EQ(failureOf([&] { toDateTime(time); }), 13) << time;
}

TEST(Dates, ReadBackFromTheirTexts) {
    const DateTime moment{year{101} / month{3} / day{4}, hours{5} + minutes{6} + seconds{7}};
    EXPECT_EQ(toDateTime(dateText(moment.date) + " " + timeText(moment.time)), moment);
    EXPECT_EQ(dateText(moment.date), "0101-03-04");
    EXPECT_EQ(timeText(moment.time), "05:06:07");
}

TEST(Left, FailsForANegativeCount) {
    EXPECT_EQ(left("abc", 2), "ab");
    EXPECT_EQ(left("abc", 9), "abc");
    EXPECT_EQ(failureOf([] { left("abc", -1); }), 5);
}

}  // namespace
}  // namespace velmora
