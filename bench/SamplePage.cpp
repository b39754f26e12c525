#include "SamplePage.h"

namespace SamplePage {

namespace {

constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>The budget of the project &amp; its schedule</title>
<link rel="stylesheet" href="/assets/site.css"><meta property="og:title" content="The budget">
<style>body { margin: 0; font: 16px/1.5 sans-serif } .card > h2 { color: #123456 }</style>
<script>window.settings = { debug: false, limits: [1, 2, 3], ready: (x) => x < 3 && x > 1 };</script>
</head><body class="page"><header class="top"><a href="/">Home</a></header>
<nav><ul><li><a href="/news">News</a></li><li><a href="/about">About</a></li></ul></nav>
<main><article class="story"><h1>The budget of the project</h1>
)";

constexpr std::string_view block = R"(<section class="part" data-index="17">
<h2><a href="/story/part-17#top">What the committee decided</a></h2>
<p>The committee <em>discussed</em> the schedule of the project &amp; its budget for most of the day,
and <a href="https://www.example.org/archive?page=17&amp;sort=date" rel="noopener">decided</a> to go on
with it until the end of the year&mdash;as long as the <strong>costs</strong> stay where they are.</p>
<p class="lead">&ldquo;Nobody expected this,&rdquo; said one of the members after the meeting. The next
one is in the spring; until then three groups work on the open questions.<br/>They report weekly.</p>
<figure><img src="/img/17.jpg" width="640" height="480" alt="The hall"><figcaption>The hall</figcaption>
</figure><ul class="facts"><li>First point of the agenda</li><li>Second point of the agenda, which took
longer than planned</li></ul>
<!-- advertisement slot 17 --><aside class="teaser"><a href="/more">Read more</a></aside>
<button type="button" class="share"><svg viewBox="0 0 24 24"><path d="M3 12h18M3 6h18M3 18h18"/></svg>
Share</button><script type="text/javascript">dataLayer.push({ 'event': 'view', 'id': 17 });</script>
<div class="card"><div class="inner"><span class="tag">Economy</span></div></div></section>
)";

constexpr std::string_view tail =
    "</article></main><footer><p>All of this is made up.</p></footer></body></html>\n";

} // namespace

std::string news(std::size_t bytes)
{
    std::string page(head);
    while (page.size() + tail.size() < bytes)
        page.append(block);
    return page.append(tail);
}

const std::vector<Hostile>& hostileKinds()
{
    static const std::vector<Hostile> kinds = {
        {"<script  repeated", "<script "},
        {"<script> repeated", "<script>"},
        {"<article> repeated", "<article>"},
        {"<article> repeated, one end", "<article>", "</article>"},
        {"<article></article> repeated", "<article></article>"},
        {"<!-- repeated", "<!--"},
        {"<!----> repeated", "<!---->"},
        {"<p> nested", "<p>"},
        {"</p> repeated", "</p>"},
        {"< repeated", "<"},
        {"&amp; repeated", "&amp;"},
        {"&#65; repeated", "&#65;"},
        {"&#1 repeated", "&#1"},
        {"& repeated", "&"},
        {"line feeds", "\n"},
        {"combining marks", "\u0301"},
    };
    return kinds;
}

std::string hostile(const Hostile& kind, std::size_t bytes)
{
    std::string page;
    page.reserve(bytes + kind.piece.size());
    while (page.size() + kind.end.size() < bytes)
        page.append(kind.piece);
    return page.append(kind.end);
}

} // namespace SamplePage
