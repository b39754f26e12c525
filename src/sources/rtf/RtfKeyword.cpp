#include "RtfKeyword.h"

#include "RtfCodePage.h"

#include <unordered_map>

using Action = RtfKeyword::Action;
using Keywords = std::unordered_map<std::string_view, RtfKeyword>;

static void addCharacters(Keywords& keywords)
{
    const std::pair<std::string_view, int> characters[] = {
        {"bullet", 0x2022},  {"emdash", 0x2014},    {"emspace", 0x2003}, {"endash", 0x2013},
        {"enspace", 0x2002}, {"ldblquote", 0x201C}, {"lquote", 0x2018},  {"ltrmark", 0x200E},
        {"qmspace", 0x2005}, {"rdblquote", 0x201D}, {"rquote", 0x2019},  {"rtlmark", 0x200F},
        {"zwbo", 0x200B},    {"zwj", 0x200D},       {"zwnbo", 0x2060},   {"zwnj", 0x200C},
        {"~", 0x00A0},       {"-", 0x00AD},         {"_", 0x2011},
    };
    for (const auto& [name, character] : characters)
        keywords[name] = {Action::character, character};
    for (const std::string_view name : {"column", "lbr", "line", "page", "par", "sect", "\r", "\n"})
        keywords[name] = {Action::layout, '\n'};
    for (const std::string_view name : {"cell", "nestcell", "tab", "\t"})
        keywords[name] = {Action::layout, '\t'};
    for (const std::string_view name : {"nestrow", "row"})
        keywords[name] = {Action::endRow};
}

static void addProperties(Keywords& keywords)
{
    keywords["u"] = {Action::unicode};
    keywords["uc"] = {Action::fallbackLength};
    keywords["ansicpg"] = {Action::documentCodePage};
    keywords["mac"] = {Action::documentCodePage, RtfCodePage::macintosh};
    keywords["pc"] = {Action::documentCodePage, 437};
    keywords["pca"] = {Action::documentCodePage, 850};
    keywords["deff"] = {Action::defaultFont};
    keywords["f"] = {Action::font};
    keywords["fcharset"] = {Action::fontCharacterSet};
    keywords["cpg"] = {Action::fontCodePage};
    keywords["plain"] = {Action::plain};
    keywords["v"] = {Action::hidden};
    keywords["deleted"] = {Action::deleted};
}

/// Destinations without text of the document. Notes and text boxes are among them because their
/// text would stand in the middle of a sentence.
static constexpr std::string_view skipped[] = {
    "aftncn",    "aftnsep",      "aftnsepc",  "annotation", "atnauthor",    "atndate",
    "atnicn",    "atnid",        "atnparent", "atnref",     "atntime",      "atrfend",
    "atrfstart", "background",   "bkmkend",   "bkmkstart",  "colortbl",     "datafield",
    "datastore", "do",           "filetbl",   "fldinst",    "fldtype",      "fontemb",
    "fontfile",  "footer",       "footerf",   "footerl",    "footerr",      "footnote",
    "formfield", "ftncn",        "ftnsep",    "ftnsepc",    "generator",    "header",
    "headerf",   "headerl",      "headerr",   "info",       "latentstyles", "listoverridetable",
    "listtable", "nonesttables", "objalias",  "objclass",   "objdata",      "objname",
    "objsect",   "pict",         "pntxta",    "pntxtb",     "revtbl",       "rsidtbl",
    "rxe",       "shp",          "shpinst",   "shprslt",    "stylesheet",   "tc",
    "tcn",       "template",     "txe",       "userprops",  "xe",           "xmlnstbl"};

/// Adds the words that say what their group is for.
static void addDestinations(Keywords& keywords)
{
    for (const std::string_view name : skipped)
        keywords[name] = {Action::skip};
    keywords["NeXTGraphic"] = {Action::skipAttachment};
    keywords["fonttbl"] = {Action::fontTable};
    keywords["upr"] = {Action::alternatives};
    keywords["ud"] = {Action::unicodeAlternative};
    for (const std::string_view name : {"field", "fldrslt", "nesttableprops", "object", "result"})
        keywords[name] = {Action::show};
    for (const std::string_view name : {"listtext", "pntext"})
        keywords[name] = {Action::listMarker};
}

RtfKeyword RtfKeyword::find(std::string_view name)
{
    static const Keywords keywords = [] {
        Keywords all;
        addCharacters(all);
        addProperties(all);
        addDestinations(all);
        return all;
    }();
    const auto found = keywords.find(name);
    return found == keywords.end() ? RtfKeyword() : found->second;
}
