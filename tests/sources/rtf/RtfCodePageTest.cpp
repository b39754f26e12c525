#include "RtfCodePage.h"

#include "RtfDecoder.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace {

/// Bytes and the characters that tell a code page from all others, as Python's codecs have them.
struct Sample
{
    int number;
    std::string_view bytes;
    std::u16string_view text;
};

const std::vector<Sample> ofCodePages = {
    {437, "\x9D\x80", u"¥Ç"},   {708, "\xD7", u"ط"},       {720, "\x94", u"¤"},
    {737, "\x80", u"Α"},        {775, "\x80", u"Ć"},       {850, "\xD5", u"ı"},
    {852, "\x85", u"ů"},        {855, "\x80", u"ђ"},       {857, "\x8D", u"ı"},
    {858, "\xD5", u"€"},        {860, "\x84", u"ã"},       {861, "\x8B", u"Ð"},
    {862, "\x80", u"א"},        {863, "\x84", u"Â"},       {864, "\x80", u"°"},
    {865, "\xAF", u"¤"},        {866, "\xA1", u"б"},       {869, "\x86", u"Ά"},
    {874, "\xA1", u"ก"},        {932, "\x93\xFA", u"日"},  {936, "\xD6\xD0", u"中"},
    {949, "\xC7\xD1", u"한"},   {950, "\xA4\xA4", u"中"},  {1250, "\x8C", u"Ś"},
    {1251, "\x80", u"Ђ"},       {1252, "\x8E\x83", u"Žƒ"}, {1253, "\xA1", u"΅"},
    {1254, "\xD0\x80", u"Ğ€"},  {1255, "\xA4", u"₪"},      {1256, "\x81", u"پ"},
    {1257, "\x8D", u"¨"},       {1258, "\xD5", u"Ơ"},      {10000, "\xDA", u"⁄"},
    {10006, "\x87", u"΅"},      {10007, "\xA2", u"Ґ"},     {10029, "\x81", u"Ā"},
    {10081, "\xDA", u"Ğ"},      {20866, "\xA4", u"╓"},     {21866, "\xA4", u"є"},
    {28591, "\xD0\xA4", u"Ð¤"}, {28592, "\xA1", u"Ą"},     {28595, "\xA1", u"Ё"},
    {28597, "\xA1", u"‘"},      {28599, "\xD0", u"Ğ"},     {28605, "\xA6", u"Š"},
};

const std::vector<Sample> ofCharacterSets = {
    {0, "\x8E\x83", u"Žƒ"},   {77, "\xDA", u"⁄"},       {78, "\x93\xFA", u"日"},
    {79, "\xC7\xD1", u"한"},  {80, "\xD6\xD0", u"中"},  {81, "\xA4\xA4", u"中"},
    {85, "\x87", u"΅"},       {86, "\xDA", u"Ğ"},       {88, "\x81", u"Ā"},
    {89, "\xA2", u"Ґ"},       {128, "\x93\xFA", u"日"}, {129, "\xC7\xD1", u"한"},
    {130, "\xD0\x65", u"한"}, {134, "\xD6\xD0", u"中"}, {136, "\xA4\xA4", u"中"},
    {161, "\xA1", u"΅"},      {162, "\xD0\x80", u"Ğ€"}, {163, "\xD5", u"Ơ"},
    {177, "\xA4", u"₪"},      {178, "\x81", u"پ"},      {186, "\x8D", u"¨"},
    {204, "\x80", u"Ђ"},      {222, "\xA1", u"ก"},      {238, "\x8C", u"Ś"},
    {254, "\x9D\x80", u"¥Ç"}, {255, "\xD5", u"ı"},
};

TEST(RtfCodePageTest, EveryCodePageHasItsOwnLetters)
{
    RtfDecoder decoder;
    for (const Sample& sample : ofCodePages)
        EXPECT_EQ(decoder.decoded(sample.bytes, sample.number), sample.text) << sample.number;
}

TEST(RtfCodePageTest, EveryCharacterSetHasItsOwnLetters)
{
    RtfDecoder decoder;
    for (const Sample& sample : ofCharacterSets)
        EXPECT_EQ(decoder.decoded(sample.bytes, RtfCodePage::ofCharacterSet(sample.number)),
                  sample.text)
            << sample.number;
}

} // namespace
