#include "RtfCodePage.h"

#include <map>

namespace RtfCodePage {

/// ICU's names of code pages. It does not have the East Asian code pages of the Macintosh; those of
/// Windows, which are nearly the same, stand in for them.
static const std::map<int, const char*> converters = {
    {437, "ibm-437"},         {708, "ASMO-708"},
    {720, "ibm-720"},         {737, "ibm-737"},
    {775, "ibm-775"},         {850, "ibm-850"},
    {852, "ibm-852"},         {855, "ibm-855"},
    {857, "ibm-857"},         {858, "ibm-858"},
    {860, "ibm-860"},         {861, "ibm-861"},
    {862, "ibm-862"},         {863, "ibm-863"},
    {864, "ibm-864"},         {865, "ibm-865"},
    {866, "ibm-866"},         {869, "ibm-869"},
    {874, "windows-874"},     {932, "windows-932"},
    {936, "windows-936"},     {949, "windows-949"},
    {950, "windows-950"},     {1250, "windows-1250"},
    {1251, "windows-1251"},   {1252, "windows-1252"},
    {1253, "windows-1253"},   {1254, "windows-1254"},
    {1255, "windows-1255"},   {1256, "windows-1256"},
    {1257, "windows-1257"},   {1258, "windows-1258"},
    {10000, "macintosh"},     {10001, "windows-932"},
    {10002, "windows-950"},   {10003, "windows-949"},
    {10006, "x-mac-greek"},   {10007, "x-mac-cyrillic"},
    {10008, "windows-936"},   {10029, "x-mac-centraleurroman"},
    {10081, "x-mac-turkish"}, {20866, "koi8-r"},
    {21866, "koi8-u"},        {28591, "iso-8859-1"},
    {28592, "iso-8859-2"},    {28595, "iso-8859-5"},
    {28597, "iso-8859-7"},    {28599, "iso-8859-9"},
    {28605, "iso-8859-15"},   {54936, "gb18030"},
    {65001, "UTF-8"},
};

/// The code pages of character sets.
static const std::map<int, int> characterSets = {
    {0, windowsLatin1}, {77, macintosh}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002},
    {85, 10006},        {86, 10081},     {88, 10029}, {89, 10007}, {128, 932},  {129, 949},
    {130, johab},       {134, 936},      {136, 950},  {161, 1253}, {162, 1254}, {163, 1258},
    {177, 1255},        {178, 1256},     {186, 1257}, {204, 1251}, {222, 874},  {238, 1250},
    {254, 437},         {255, 850},
};

bool isKnown(int codePage)
{
    return codePage == johab || converterName(codePage) != nullptr;
}

const char* converterName(int codePage)
{
    const auto found = converters.find(codePage);
    return found == converters.end() ? nullptr : found->second;
}

int ofCharacterSet(int characterSet)
{
    const auto found = characterSets.find(characterSet);
    return found == characterSets.end() ? 0 : found->second;
}

} // namespace RtfCodePage
