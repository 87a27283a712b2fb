#include "config/text_codec.h"

#include <gtest/gtest.h>

namespace vx::config {
namespace {

// Bytes 0x80..0xFF of Windows-1251 as the platform decodes them, in UTF-8.
// 0x98 has no letter and decodes as U+0098 (C2 98); A0 is the no-break space
// and AD the soft hyphen.
const std::string upperHalfUtf8 =
    "ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏђ‘’“”•–—\xC2\x98™љ›њќћџ"
    "\xC2\xA0ЎўЈ¤Ґ¦§Ё©Є«¬\xC2\xAD®Ї°±Ііґµ¶·ё№є»јЅѕї"
    "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя";

std::string allBytesFrom(int first) {
    std::string bytes;
    for (int b = first; b < 256; ++b) bytes.push_back(static_cast<char>(b));
    return bytes;
}

TEST(TextCodec, UpperHalfDecodesAsThePlatformDoes) {
    EXPECT_EQ(cp1251ToUtf8(allBytesFrom(0x80)), upperHalfUtf8);
    EXPECT_EQ(utf8ToCp1251(upperHalfUtf8), allBytesFrom(0x80));
}

TEST(TextCodec, EveryByteSurvivesARoundTrip) {
    std::string bytes = allBytesFrom(0);   // NUL and the control bytes included
    EXPECT_EQ(utf8ToCp1251(cp1251ToUtf8(bytes)), bytes);
    EXPECT_EQ(utf16ToCp1251(cp1251ToUtf16(bytes)), bytes);
}

TEST(TextCodec, AsciiIsUntouched) {
    const std::string ascii = "C:\\configs\\vx_main_config.json {\"a\":1}\r\n\t~\x7F";
    EXPECT_EQ(cp1251ToUtf8(ascii), ascii);
    EXPECT_EQ(utf8ToCp1251(ascii), ascii);
}

TEST(TextCodec, SingleLettersByteForByte) {
    EXPECT_EQ(utf8ToCp1251("Ё"), "\xA8");
    EXPECT_EQ(utf8ToCp1251("ё"), "\xB8");
    EXPECT_EQ(utf8ToCp1251("№"), "\xB9");
    EXPECT_EQ(utf8ToCp1251("€"), "\x88");
    EXPECT_EQ(utf8ToCp1251("А"), "\xC0");
    EXPECT_EQ(utf8ToCp1251("я"), "\xFF");
    EXPECT_EQ(cp1251ToUtf8("\xA8\xB8\xB9\x88"), "Ёё№€");
    EXPECT_EQ(cp1251ToUtf8("\xD1\xF2\xEE\xEF"), "Стоп");
}

TEST(TextCodec, ByteWithoutALetterKeepsItsValue) {
    EXPECT_EQ(cp1251ToUtf8("\x98"), "\xC2\x98");
    EXPECT_EQ(utf8ToCp1251("\xC2\x98"), "\x98");
    EXPECT_EQ(cp1251ToUtf16("\x98"), u"\u0098");
}

TEST(TextCodec, CharactersWithoutA1251FormBecomeQuestionMarks) {
    EXPECT_EQ(utf8ToCp1251("é"), "?");           // U+00E9
    EXPECT_EQ(utf8ToCp1251("Ω"), "?");           // U+03A9
    EXPECT_EQ(utf8ToCp1251("中文"), "??");
    EXPECT_EQ(utf8ToCp1251("\xC2\x81"), "?");    // U+0081: 0x81 is Ѓ, not U+0081
    EXPECT_EQ(utf8ToCp1251("\xEF\xBF\xBD"), "?"); // U+FFFD itself
    EXPECT_EQ(utf8ToCp1251("Ж\xE2\x82\xACé!"), "\xC6\x88?!");
}

TEST(TextCodec, CharactersBeyondTheBasicPlaneBecomeTwoQuestionMarks) {
    EXPECT_EQ(utf8ToCp1251("\xF0\x9F\x98\x80"), "??");          // U+1F600
    EXPECT_EQ(utf8ToCp1251("a\xF4\x8F\xBF\xBF" "b"), "a??b");   // U+10FFFF
    EXPECT_EQ(utf16ToCp1251(u"\U0001F600"), "??");
}

TEST(TextCodec, InvalidUtf8BecomesOneQuestionMarkPerBrokenPart) {
    EXPECT_EQ(utf8ToCp1251("\x80"), "?");                  // lone continuation
    EXPECT_EQ(utf8ToCp1251("a\xBF\xBF" "b"), "a??b");
    EXPECT_EQ(utf8ToCp1251("\xD0"), "?");                  // cut off at the end
    EXPECT_EQ(utf8ToCp1251("\xD0" "A"), "?A");             // cut off by ASCII
    EXPECT_EQ(utf8ToCp1251("\xE2\x82" "A"), "?A");         // two of three bytes
    EXPECT_EQ(utf8ToCp1251("\xF0\x9F\x98"), "?");          // three of four bytes
    EXPECT_EQ(utf8ToCp1251("\xC0\xAF"), "??");             // overlong '/'
    EXPECT_EQ(utf8ToCp1251("\xE0\x80\xAF"), "???");        // overlong, three bytes
    EXPECT_EQ(utf8ToCp1251("\xED\xA0\x80"), "???");        // encoded surrogate
    EXPECT_EQ(utf8ToCp1251("\xF4\x90\x80\x80"), "????");   // above U+10FFFF
    EXPECT_EQ(utf8ToCp1251("\xF5\xFE\xFF"), "???");        // never valid
    EXPECT_EQ(utf8ToCp1251("\xD0\xD0\x9F"), "?\xCF");      // broken, then П
}

TEST(TextCodec, Utf16LoneSurrogateBecomesQuestionMark) {
    std::u16string lone;
    lone.push_back(0xD83D);
    lone.push_back(u'x');
    EXPECT_EQ(utf16ToCp1251(lone), "?x");
}

TEST(TextCodec, Utf16CarriesTheSameTable) {
    EXPECT_EQ(cp1251ToUtf16("\xCF\xF0\xE8\xE2\xE5\xF2 \xB9"), u"Привет №");
    EXPECT_EQ(utf16ToCp1251(u"Привет №é"), "\xCF\xF0\xE8\xE2\xE5\xF2 \xB9?");
}

} // namespace
} // namespace vx::config
