"use strict";

// The page is whole without this: here are only shortcuts.

// Buttons that open and close all nodes of the tree.
const tree = document.querySelector(".tree");
const tools = tree.querySelector(".tools");
tools.hidden = false;
tools.addEventListener("click", (event) => {
    const wish = event.target.dataset.open;
    if (wish) {
        for (const node of tree.querySelectorAll("details")) {
            node.open = wish === "all";
        }
    }
});

// A small board stays within the window, and Escape puts it away until one comes back to it.
for (const peek of document.querySelectorAll(".peek")) {
    const tip = peek.querySelector(".tip");
    const show = () => {
        peek.classList.remove("dismissed", "above");
        tip.style.left = "0";
        const place = tip.getBoundingClientRect();
        peek.classList.toggle("above", place.bottom > innerHeight && place.top > place.height);
        tip.style.left = Math.min(0, document.body.clientWidth - place.right) + "px";
    };
    peek.addEventListener("focusin", show);
    peek.addEventListener("mouseenter", show);
}
document.addEventListener("keydown", (event) => {
    if (event.key === "Escape") {
        for (const peek of document.querySelectorAll(".peek:hover, .peek:focus-within")) {
            peek.classList.add("dismissed");
        }
    }
});
