#include "tools/report/HtmlPage.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kStyle = R"(
:root{color-scheme:light dark;--back:#fbfbfa;--card:#fff;--ink:#1d2429;--soft:#66727b;--line:#dde2e5;
--c1:#0072b2;--c2:#d55e00;--c3:#009e73;--c4:#cc79a7;--in:#56b4e9;--cut:#e69f00;--off:#9a4a1c;--idle:#b8c0c6}
@media(prefers-color-scheme:dark){:root{--back:#14181b;--card:#1d2327;--ink:#e8ecee;--soft:#9aa6ae;--line:#343d43;
--c1:#56b4e9;--c2:#ff8b3d;--c3:#2cc79b;--c4:#e39ac4;--in:#3b93c9;--cut:#e69f00;--off:#c96f3a;--idle:#56616a}}
*{box-sizing:border-box}
body{margin:0 auto;padding:28px 20px 60px;max-width:1120px;background:var(--back);color:var(--ink);
font:15px/1.5 system-ui,"Segoe UI","DejaVu Sans",sans-serif}
h1{font-size:26px;margin:0 0 2px;letter-spacing:-.01em}
h2{font-size:18px;margin:34px 0 10px}
h3{font-size:14px;margin:14px 0 6px;font-weight:600}
.card>h3:first-child{margin-top:0}
p.lead{color:var(--soft);margin:0 0 18px}
.cards{display:grid;grid-template-columns:repeat(auto-fill,minmax(230px,1fr));gap:12px}
.plots{display:grid;grid-template-columns:repeat(auto-fill,minmax(330px,1fr));gap:12px}
.card{background:var(--card);border:1px solid var(--line);border-radius:10px;padding:14px 16px}
.card b{display:block;font-size:26px;font-weight:650;line-height:1.2;font-variant-numeric:tabular-nums}
.card b small{font-size:13px;font-weight:400;color:var(--soft)}
.card span{color:var(--soft);font-size:13px}
.wide{margin-bottom:12px}
svg{display:block;width:100%;height:auto}
svg rect{shape-rendering:crispEdges}
svg text{fill:var(--soft);font-size:11px;font-family:inherit;paint-order:stroke;stroke:var(--card);stroke-width:3px}
svg text.strong{fill:var(--ink)}
.axis{stroke:var(--line);stroke-width:1}
.legend{color:var(--soft);font-size:12.5px;margin:6px 0 0}
.legend i{display:inline-block;width:11px;height:11px;border-radius:3px;margin:0 5px 0 14px;vertical-align:-1px}
.legend i:first-child{margin-left:0}
.scroll{overflow-x:auto}
table{border-collapse:collapse;width:100%;font-variant-numeric:tabular-nums}
th,td{padding:5px 10px;border-bottom:1px solid var(--line);text-align:right;white-space:nowrap}
th:first-child,td:first-child{text-align:left}
th{color:var(--soft);font-weight:600;font-size:13px}
td.unit{color:var(--soft);text-align:left}
.values{text-align:left;white-space:normal;overflow-wrap:anywhere}
)";

}  // namespace

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

std::string htmlPage(const std::string& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">\n<title>" +
         escaped(title) + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n" + body +
         "</body>\n</html>\n";
}

}  // namespace fyn::productionrules
