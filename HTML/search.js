// SPDX-License-Identifier: MIT
// The manual's search box: looks for all words that are typed, in the index that the build writes
// (search-index.js). Without it, as in a folder of sources, there is no box.
"use strict";

(() => {
  if (typeof searchIndex === "undefined") return;
  const fold = (text) => text.normalize("NFKD").replace(/[\u0300-\u036f]/g, "").toLowerCase();
  const rows = searchIndex.map(([target, page, title, text]) =>
      ({ target, page, title, text, folded: { title: fold(title), text: fold(text) } }));
  const most = 12;

  const box = document.createElement("form");
  box.className = "search";
  box.innerHTML = '<input type="search" placeholder="Search" aria-label="Search the manual" accesskey="s">' +
                  '<ol hidden></ol>';
  const input = box.firstChild;
  const list = box.lastChild;
  document.querySelector("header").append(box);

  function find(question) {
    const words = fold(question).split(/\s+/).filter((word) => word);
    if (!words.length) return null;
    const found = [];
    for (const row of rows) {
      let score = 0;
      for (const word of words) {
        const in_title = row.folded.title.includes(word);
        if (!in_title && !row.folded.text.includes(word)) { score = -1; break; }
        score += in_title ? 10 : 1;
      }
      if (score > 0) found.push({ row, score });
    }
    found.sort((a, b) => b.score - a.score);
    return { words, found };
  }

  // The words around the first hit.
  function excerpt(row, word) {
    const at = row.folded.text.indexOf(word);
    const from = Math.max(0, row.text.lastIndexOf(" ", Math.max(0, at - 40)));
    return (from > 0 ? "… " : "") + row.text.slice(from, from + 110).trim() + " …";
  }

  function show() {
    const answer = find(input.value);
    list.replaceChildren();
    list.hidden = answer === null;
    if (answer === null) return;
    for (const { row } of answer.found.slice(0, most)) {
      const link = document.createElement("a");
      link.href = row.target;
      link.textContent = row.title === row.page ? row.page : row.page + ": " + row.title;
      const words = document.createElement("small");
      words.textContent = excerpt(row, answer.words[0]);
      const item = document.createElement("li");
      item.append(link, words);
      list.append(item);
    }
    if (!answer.found.length) {
      const item = document.createElement("li");
      item.textContent = "Nothing was found";
      list.append(item);
    }
  }

  input.addEventListener("input", show);
  input.addEventListener("keydown", (event) => {
    if (event.key === "Escape") { input.value = ""; show(); }
  });
  box.addEventListener("submit", (event) => {
    event.preventDefault();
    const first = list.querySelector("a");
    if (first) location.href = first.href;
  });
})();
