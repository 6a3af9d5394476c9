// The search of the guide. It looks through guideIndex (search-index.js): [address, page, heading, text] of every
// section. Plain enough for every browser that still opens pages from the disk.
(function () {
    "use strict";
    var MOST = 20; // sections that are shown
    var AROUND = 60; // characters shown before and after the first place

    // Every word, wherever it stands, in capital letters or not; Chinese needs no word breaks.
    function findSections(index, query) {
        var words = query.toLowerCase().split(/\s+/).filter(function (word) { return word !== ""; });
        if (words.length === 0) { return []; }
        var found = index.map(function (entry, place) {
            var heading = entry[2].toLowerCase();
            var all = heading + "\n" + entry[3].toLowerCase();
            var matches = words.every(function (word) { return all.indexOf(word) >= 0; });
            var inHeading = words.every(function (word) { return heading.indexOf(word) >= 0; });
            return { entry: entry, place: place, rank: matches ? (inHeading ? 0 : 1) : 2 };
        }).filter(function (hit) { return hit.rank < 2; });
        found.sort(function (one, other) { return one.rank - other.rank || one.place - other.place; });
        return found.map(function (hit) { return hit.entry; });
    }

    // The text around the first of the words that stands in it: before, the word, after.
    function excerpt(text, query) {
        var lower = text.toLowerCase();
        var words = query.toLowerCase().split(/\s+/);
        for (var number = 0; number < words.length; ++number) {
            var place = words[number] === "" ? -1 : lower.indexOf(words[number]);
            if (place >= 0) {
                var end = place + words[number].length;
                var start = Math.max(0, place - AROUND);
                return [(start > 0 ? "…" : "") + text.slice(start, place), text.slice(place, end),
                        text.slice(end, end + AROUND) + (end + AROUND < text.length ? "…" : "")];
            }
        }
        return [text.slice(0, 2 * AROUND), "", text.length > 2 * AROUND ? "…" : ""];
    }

    function show(results, query, none) {
        results.textContent = "";
        if (query.trim() === "") { return; }
        var found = findSections(guideIndex, query).slice(0, MOST);
        if (found.length === 0) { results.textContent = none; }
        found.forEach(function (entry) {
            var line = document.createElement("p");
            var link = document.createElement("a");
            link.href = entry[0];
            link.textContent = entry[1] === entry[2] ? entry[1] : entry[1] + ": " + entry[2];
            var parts = excerpt(entry[3], query);
            var mark = document.createElement("mark");
            mark.textContent = parts[1];
            line.appendChild(link);
            line.appendChild(document.createElement("br"));
            line.appendChild(document.createTextNode(parts[0]));
            line.appendChild(mark);
            line.appendChild(document.createTextNode(parts[2]));
            results.appendChild(line);
        });
    }

    if (typeof document === "undefined") {
        module.exports = { findSections: findSections, excerpt: excerpt };
        return;
    }
    var form = document.getElementById("search");
    var field = form.querySelector("input");
    var results = document.getElementById("results");
    form.removeAttribute("hidden");
    form.addEventListener("submit", function (event) { event.preventDefault(); });
    field.addEventListener("input", function () { show(results, field.value, field.getAttribute("data-none")); });
    // A result on this page: the list gives way to the section.
    results.addEventListener("click", function (event) {
        if (event.target.tagName === "A") { results.textContent = ""; }
    });
}());
