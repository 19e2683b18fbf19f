#include <gtest/gtest.h>

#include <set>

#include "core/formats.h"
#include "zelt/ycbcr.h"

namespace zelt {
namespace {

uint32_t Code(const char (&s)[5]) { return FourCC(s[0], s[1], s[2], s[3]); }

TEST(Formats, FourCharacterCodesSpellTheirNameInMemory) {
  EXPECT_EQ(Code("UYVY"), 0x59565955u);
  EXPECT_EQ(Code("v210"), 0x30313276u);
  EXPECT_EQ(Code("422P"), 0x50323234u);
}

TEST(Formats, AliasTableMapsEveryCodeToItsLayout) {
  struct Case {
    uint32_t code;
    Layout layout;
  } cases[] = {
      {0, Layout::RGB32},          {Code("UYVY"), Layout::UYVY}, {Code("UYNV"), Layout::UYVY},
      {Code("2vuy"), Layout::UYVY}, {Code("2Vuy"), Layout::UYVY}, {Code("yuv2"), Layout::UYVY},
      {Code("yuV2"), Layout::UYVY}, {Code("AJYU"), Layout::UYVY}, {0x8800001Eu, Layout::UYVY},
      {0x8810001Eu, Layout::UYVY},  {Code("YUY2"), Layout::YUY2}, {Code("YUNV"), Layout::YUY2},
      {Code("YVYU"), Layout::YVYU}, {Code("cyuv"), Layout::CYUV}, {Code("I420"), Layout::I420},
      {Code("IYUV"), Layout::I420}, {Code("YV12"), Layout::YV12}, {Code("P422"), Layout::P422},
      {Code("012v"), Layout::V012}, {Code("v210"), Layout::V012},
  };
  std::set<uint32_t> seen;
  for (const Case& c : cases) {
    EXPECT_EQ(LayoutOfCode(c.code), static_cast<uint8_t>(c.layout)) << std::hex << c.code;
    seen.insert(c.code);
  }
  EXPECT_EQ(seen.size(), 20u);
  for (uint32_t unknown : {Code("422P"), Code("NV12"), 0x12345678u, 1u, Code("uyvy")}) {
    EXPECT_EQ(LayoutOfCode(unknown), kNoLayout) << std::hex << unknown;
  }
}

TEST(Formats, CanTranscodeKnowsCodesNotPairs) {
  for (const FormatAlias& a : kFormatAliases) {
    for (const FormatAlias& b : kFormatAliases) EXPECT_EQ(cycbcr_can_transcode(a.code, b.code), 1u);
    EXPECT_EQ(cycbcr_can_transcode(a.code, Code("422P")), 0u);
    EXPECT_EQ(cycbcr_can_transcode(0x12345678u, a.code), 0u);
  }
}

struct StrideCase {
  const char* what;
  uint32_t code;
  uint32_t width;
  uint32_t stride;
  uint32_t expected;
};

TEST(Formats, NormalizeStride) {
  const StrideCase cases[] = {
      {"I420 1000 keeps 1024", Code("I420"), 1000, 1024, 1024},
      {"I420 1000 trims 1100", Code("I420"), 1000, 1100, 1000},
      {"I420 1920 trims 2048", Code("I420"), 1920, 2048, 1920},
      {"I420 1920 keeps 1800", Code("I420"), 1920, 1800, 1800},
      {"IYUV as I420", Code("IYUV"), 1000, 1100, 1000},
      {"YV12", Code("YV12"), 64, 200, 64},
      {"P422", Code("P422"), 130, 257, 130},
      {"P422 at the rounded width", Code("P422"), 130, 256, 256},
      {"422P is left alone", Code("422P"), 64, 1000, 1000},
      {"012v 0 stays", Code("012v"), 1280, 0, 0},
      {"012v odd stride", Code("v210"), 1280, 3000, 3408},
      {"012v multiple of 16, large enough", Code("v210"), 1280, 3456, 3456},
      {"012v multiple of 16, too small", Code("v210"), 1280, 3392, 3408},
      {"012v width 1 gives 0", Code("v210"), 1, 7, 0},
      {"UYVY raised", Code("2vuy"), 100, 10, 200},
      {"UYVY kept", Code("UYVY"), 100, 201, 201},
      {"host code", 0x8810001Eu, 7, 0, 14},
      {"YUY2", Code("YUNV"), 5, 9, 10},
      {"cyuv", Code("cyuv"), 5, 11, 11},
      {"RGB32 unchanged", 0, 100, 3, 3},
      {"unknown unchanged", 0x12345678u, 100, 3, 3},
  };
  for (const StrideCase& c : cases) {
    uint32_t s = c.stride;
    NormalizeStride(c.code, c.width, &s);
    EXPECT_EQ(s, c.expected) << c.what;
  }
}

TEST(Formats, V012PitchAndBitDepth) {
  EXPECT_EQ(V012MinPitch(1920), 5120u);
  EXPECT_EQ(V012MinPitch(1280), 3456u);
  EXPECT_EQ(V012MinPitch(720), 1920u);
  EXPECT_EQ(V012Pitch(1280, 3408), 3456u);
  EXPECT_EQ(V012Pitch(1280, 0), 0u);
  EXPECT_EQ(V012Pitch(1280, 4096), 4096u);
  EXPECT_EQ(TenToEight(1020), 255);
  EXPECT_EQ(TenToEight(1021), 255);
  EXPECT_EQ(TenToEight(1023), 255);
  EXPECT_EQ(TenToEight(1), 0);
  EXPECT_EQ(TenToEight(2), 1);
  EXPECT_EQ(TenToEight(513), 128);
  EXPECT_EQ(EightToTen(255), 1020u);
  for (uint32_t v = 0; v < 256; ++v) EXPECT_EQ(TenToEight(EightToTen(v)), v);
}

}  // namespace
}  // namespace zelt
