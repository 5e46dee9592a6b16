// The record of a watched line as a tree of the page, with nodes that open and close.
#pragma once

#include "explain/watchedLine.h"
#include "kestran-explain/htmlWriter.h"

class HtmlTree {
public:
    // Everything handed in must outlive the object. With `_all`, every move that was tried.
    HtmlTree(HtmlWriter& _html, const WatchedLine& _line, bool _all);

    // Writes a pass; `isOpen`: whether its nodes are shown at first.
    void addPass(int pass, bool isOpen);

private:
    void addNode(int pass, int ply);
    void addMove(int pass, int ply, const NodeMoveInfo& info);
    void addMore(int pass, int ply, const NodeMoveInfo& info);
    void addRefutation(int pass, int ply, const NodeMoveInfo& info, const NodeMoveInfo& refutation);

    HtmlWriter& html;
    const WatchedLine& line;
    bool all;
};
