#include "DateColumn.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>

#include <filesystem>

#include "DayText.h"
#include "TemporaryDirectory.h"
#include "ZoneCalendar.h"

namespace Kestry {
namespace {

class DateColumnTest : public ::testing::TestWithParam<const char*> {
protected:
    [[nodiscard]] static double widthOf(const std::string& text, int fontSize)
    {
        QFont font = QGuiApplication::font();
        font.setPixelSize(fontSize);
        return QFontMetricsF(font).horizontalAdvance(QString::fromStdString(text));
    }
};

TEST_P(DateColumnTest, EveryDateOfAYearHasRoom)
{
    const KestryCore::DayText days(KestryCore::ZoneCalendar("UTC", GetParam()));
    DateColumn column(GetParam(), nullptr);
    const int width = column.width(13);
    double widest = 0.0;
    for (int day = 0; day < 365; ++day) {
        const std::string date = days.shortDay(KestryCore::Date{(day + 0.5) * 86'400.0});
        EXPECT_LE(widthOf(date, 13), width + 0.5) << date;
        widest = std::max(widest, widthOf(date, 13));
    }
    EXPECT_LT(width, widest + 4.0);
}

INSTANTIATE_TEST_SUITE_P(Languages, DateColumnTest,
    ::testing::Values(
        "en_US", "de_DE", "pt_BR", "ar_EG", "ca_ES", "gl_ES", "th_TH", "fa_IR", "fi_FI", "ja_JP"));

TEST(DateColumnZoneTest, IsMeasuredWhereTheZoneFilesLackUTC)
{
    const int width = DateColumn("en_US", nullptr).width(13);
    const KestryCore::TemporaryDirectory folder;
    std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Tokyo", folder.path("Home"));
    const KestryCore::EnvironmentVariable zones("TZDIR", folder.path());
    DateColumn column("en_US", nullptr);
    EXPECT_EQ(column.width(13), width);
}

TEST(DateColumnSizeTest, LargerTextsNeedMoreRoom)
{
    DateColumn column("pt_BR", nullptr);
    const int small = column.width(13);
    EXPECT_GT(column.width(20), small);
    EXPECT_EQ(column.width(13), small);
}

} // namespace
} // namespace Kestry
