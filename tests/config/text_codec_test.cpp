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

// ASCII as it stands, the upper half as the table above, every byte (NUL and
// the control bytes included) back again, through UTF-8 and UTF-16 alike.
TEST(TextCodec, EveryByteDecodesAsThePlatformDoesAndComesBack) {
    const std::string ascii = "C:\\configs\\vx_main_config.json {\"a\":1}\r\n\t~\x7F";
    EXPECT_EQ(cp1251ToUtf8(ascii), ascii);
    EXPECT_EQ(utf8ToCp1251(ascii), ascii);
    EXPECT_EQ(cp1251ToUtf8(allBytesFrom(0x80)), upperHalfUtf8);
    EXPECT_EQ(utf8ToCp1251(upperHalfUtf8), allBytesFrom(0x80));
    const std::string bytes = allBytesFrom(0);
    EXPECT_EQ(utf8ToCp1251(cp1251ToUtf8(bytes)), bytes);
    EXPECT_EQ(utf16ToCp1251(cp1251ToUtf16(bytes)), bytes);
    EXPECT_EQ(cp1251ToUtf16("\x98"), u"\u0098");
    EXPECT_EQ(cp1251ToUtf16("\xCF\xF0\xE8\xE2\xE5\xF2 \xB9"), u"Привет №");
}

// What has no 1251 form becomes "?": one per character of the basic plane,
// two beyond it (as UTF-16 counts them), one per broken part of bad UTF-8.
TEST(TextCodec, QuestionMarksForWhatHasNoForm) {
    const std::pair<const char*, const char*> cases[] = {
        {"é", "?"},
        {"\xC2\x81", "?"},            // U+0081: 0x81 is Ѓ, not U+0081
        {"\xEF\xBF\xBD", "?"},       // U+FFFD itself
        {"Ж\xE2\x82\xACé!", "\xC6\x88?!"},
        {"\xF0\x9F\x98\x80", "??"},    // U+1F600
        {"\x80", "?"},                 // lone continuation
        {"\xD0", "?"},                 // cut off at the end
        {"\xD0" "A", "?A"},            // cut off by ASCII
        {"\xC0\xAF", "??"},           // overlong '/'
        {"\xED\xA0\x80", "???"},     // encoded surrogate
        {"\xF4\x90\x80\x80", "????"},  // above U+10FFFF
        {"\xF5\xFE\xFF", "???"},     // never valid
        {"\xD0\xD0\x9F", "?\xCF"},  // broken, then П
    };
    for (const auto& [utf8, cp1251] : cases)
        EXPECT_EQ(utf8ToCp1251(utf8), cp1251) << utf8;
    EXPECT_EQ(utf16ToCp1251(u"\U0001F600"), "??");
    EXPECT_EQ(utf16ToCp1251(u"Привет №é"), "\xCF\xF0\xE8\xE2\xE5\xF2 \xB9?");
    std::u16string lone;
    lone.push_back(0xD83D);
    lone.push_back(u'x');
    EXPECT_EQ(utf16ToCp1251(lone), "?x");
}

} // namespace
} // namespace vx::config
