// Small parts: nearest names, numbered names, sizes and other words of the command line.
#include <gtest/gtest.h>

#include "Arguments.h"
#include "Error.h"
#include "Names.h"
#include "PictureWriter.h"

using namespace zrconvert;

namespace {

using Names = std::vector<std::string_view>;

TEST(NearestNames, OrdersByDistanceAndIgnoresCase) {
  const Names names{"Mono8", "Mono12", "Mono12p", "Bayer12p", "YCbCr8"};
  EXPECT_EQ(NearestNames("mono12P", names, 2), (Names{"Mono12p", "Mono12"}));
  EXPECT_EQ(NearestNames("Bayr12p", names, 1), Names{"Bayer12p"});
  EXPECT_EQ(NearestNames("Sepia", names, 3), Names{});
}

TEST(NearestNames, TellsEachNameOnce) {
  EXPECT_EQ(NearestNames("Mono9", {"Mono8", "Mono8"}, 3), Names{"Mono8"});
}

TEST(OutputName, PutsTheNumberInItsPlace) {
  EXPECT_EQ(OutputName("a_%04d.png").At(7), "a_0007.png");
  EXPECT_EQ(OutputName("a_%d.png").At(12345), "a_12345.png");
  EXPECT_EQ(OutputName("%02d%%.png").At(123), "123%.png");
  EXPECT_EQ(OutputName("plain.png").At(3), "plain.png");
}

TEST(OutputName, RefusesWhatIsNoNumber) {
  for (const char* name : {"%", "%4", "%x", "%s.png", "%-4d", "%d%d", "%d.%04d", "%123d"}) {
    EXPECT_THROW(OutputName{name}, UsageError) << name;
  }
}

TEST(Arguments, Sizes) {
  EXPECT_EQ(ReadSize("640x480").width, 640U);
  EXPECT_EQ(ReadSize("1x1048576").height, 1048576U);
  for (const char* text : {"", "x", "640", "640x", "x480", "640X480", "6 40x480", "+1x1", "1x1x1", "1.5x1",
                           "0x0", "1048577x1", "32769x32768", "18446744073709551617x1"}) {
    EXPECT_THROW(ReadSize(text), UsageError) << text;
  }
}

TEST(Arguments, Channels) {
  const auto read = [](const char* text, NumberRange range = NumberRange::Any) {
    return ReadChannels("--gain", text, range);
  };
  const auto three = read("1.5,-2,3e1");
  EXPECT_EQ(three.red, 1.5);
  EXPECT_EQ(three.green, -2);
  EXPECT_EQ(three.blue, 30);
  const auto one = read("0.25");
  EXPECT_EQ(one.red, 0.25);
  EXPECT_EQ(one.green, 0.25);
  EXPECT_EQ(one.blue, 0.25);
  for (const char* text : {"", ",", "1,2", "1,2,3,4", "1,,3", "nan", "inf", "1,2,x"}) {
    EXPECT_THROW(read(text), UsageError) << text;
  }
  EXPECT_THROW(read("1,-1,1", NumberRange::NotNegative), UsageError);
}

TEST(Arguments, Regions) {
  const auto region = ReadRegion("1,2,30,40");
  EXPECT_EQ(region.x, 1U);
  EXPECT_EQ(region.y, 2U);
  EXPECT_EQ(region.width, 30U);
  EXPECT_EQ(region.height, 40U);
  for (const char* text : {"", "1,2,3", "1,2,3,4,5", "-1,2,3,4", "1,2,3,0", "4294967296,0,1,1"}) {
    EXPECT_THROW(ReadRegion(text), UsageError) << text;
  }
}

}  // namespace
