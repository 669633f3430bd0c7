// A new conversion rule by which `source` converts into `target`: value * factor + addend.
#pragma once

#include "quantor/convinfo.h"

inline QtrConvInfoStd* NewRule(const QtrUnitBase* target, const QtrUnitBase* source, double factor,
                               double addend = 0.0, bool isExplicit = true, int pre = 0, int post = 0) {
    auto* rule = new QtrConvInfoStd;
    rule->SetUnits(target, source);
    rule->SetFormula(factor, addend);
    rule->SetExplicit(isExplicit);
    rule->SetPreFmtshft(pre);
    rule->SetPostFmtshft(post);
    return rule;
}
