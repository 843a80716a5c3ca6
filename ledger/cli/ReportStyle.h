// The style sheet of the report's page.
#pragma once

namespace ledger {

inline constexpr const wchar_t* ReportStyle = LR"(
:root { color-scheme: light dark; --page: #f6f7f9; --card: #fff; --text: #1b2430; --quiet: #566375; --edge: #d8dde4;
  --line: #1f5fbf; --area: #1f5fbf22; --gap: #e0a100; --void: #c02a2a; --good: #1d7a3a; --bad: #b3261e; }
@media (prefers-color-scheme: dark) { :root { --page: #12161c; --card: #1c222b; --text: #e7ebf0; --quiet: #a2aebd;
  --edge: #343d4a; --line: #7db1ff; --area: #7db1ff22; --gap: #d9a514; --void: #ff7b72; --good: #6ccf8a; --bad: #ff8a80; } }
* { box-sizing: border-box; }
body { margin: 0; padding: 1.5rem; background: var(--page); color: var(--text);
  font: 1rem/1.45 system-ui, "Segoe UI", "Liberation Sans", sans-serif; overflow-wrap: anywhere; }
body > * { max-width: 75rem; margin-left: auto; margin-right: auto; }
h1 { font-size: 1.6rem; margin: 0; } h2 { font-size: 1.2rem; margin: 2rem 0 .25rem; } h3 { font-size: 1rem; margin: 0; }
p { margin: .25rem 0; } .quiet { color: var(--quiet); }
.card { background: var(--card); border: 1px solid var(--edge); border-radius: .5rem; padding: 1rem; }
.findings { margin-top: 1rem; border-left: .4rem solid var(--bad); } .findings.none { border-left-color: var(--good); }
.findings h3 { margin-top: .75rem; } .findings ul { margin: .25rem 0; padding-left: 1.25rem; }
.grid-of-cards { display: grid; gap: 1rem; grid-template-columns: repeat(auto-fill, minmax(min(100%, 22rem), 1fr)); margin-top: .75rem; }
.meter { height: .6rem; margin: .5rem 0 .25rem; border: 1px solid var(--edge); border-radius: .3rem; overflow: hidden; }
.meter span { display: block; height: 100%; background: var(--line); }
svg { display: block; width: 100%; height: 10rem; margin-top: .75rem; }
svg path { fill: none; vector-effect: non-scaling-stroke; }
svg .grid { stroke: var(--edge); } svg .line { stroke: var(--line); stroke-width: 2; } svg .area { fill: var(--area); }
svg .gap { fill: var(--gap); fill-opacity: .45; } svg .void { stroke: var(--void); stroke-width: 2; }
.axis { display: flex; justify-content: space-between; gap: 1rem; color: var(--quiet); font-size: .85rem; }
dl { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; margin: .5rem 0 0; } dl div { display: flex; gap: .35rem; }
dt { color: var(--quiet); } dd { margin: 0; font-variant-numeric: tabular-nums; }
.key { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; } .key span::before { content: ""; display: inline-block; width: 1rem;
  margin-right: .4rem; vertical-align: middle; border-top: .15rem solid var(--line); }
.key .gap::before { height: .7rem; border: 0; background: var(--gap); opacity: .6; }
.key .void::before { content: "\00d7"; width: auto; border: 0; color: var(--void); font-weight: 700; }
)";

} // namespace ledger
