// The library's conversion rule: factor, addend and the two number-format
// shifts from a source unit to a target unit.
#pragma once

#include <optional>

#include "quantor/model.h"

class QUANTOR_API QtrConvInfoStd : public QtrConvInfoBase {
public:
    QtrConvInfoStd();
    QtrConvInfoStd(const QtrConvInfoStd&) = default;
    QtrConvInfoStd& operator=(const QtrConvInfoStd&) = default;
    ~QtrConvInfoStd() override = default;

    double Addend() const override;
    double Factor() const override;
    void FormatDeltas(int& pre, int& post) const override;
    int FmtPostDecpnt() const override;
    int FmtPreDecpnt() const override;
    std::wstring FormatStringGen(int preDigits, int postDigits) const override;
    bool Is_Explicit() const override;
    const QtrUnitBase* SrcUnit() const override;
    const QtrUnitBase* TrgtUnit() const override;
    double Convert(double value) const override;

    void SetFormula(double factor, double addend);
    // Target first, as in the description language where the target stands
    // left of the arrow.
    void SetUnits(const QtrUnitBase* target, const QtrUnitBase* source);
    void SetPreFmtshft(int shift);
    void SetPostFmtshft(int shift);
    void SetExplicit(bool isExplicit);

    // The rule applying `inner` and then `outer`, or nothing (reported) when
    // outer's source is not the very unit object that is inner's target or
    // the result is out of range.
    static std::optional<QtrConvInfoStd> Chain(const QtrConvInfoBase* outer, const QtrConvInfoBase* inner);
    // Chain on the heap, or null; the caller owns the result.
    static QtrConvInfoStd* NewChain(const QtrConvInfoBase* outer, const QtrConvInfoBase* inner);
    // The rule that undoes this one, or nothing (reported) for a factor of 0
    // or an inverse out of range.
    std::optional<QtrConvInfoStd> Inverse() const;
    // Inverse on the heap, or null; the caller owns the result.
    QtrConvInfoStd* NewInverse() const;
    // Writes the rule as a `convert` statement; to the trace when `file` is null.
    void PrettyPrint(QtrTextFile* file) const;

private:
    void Clear();

    const QtrUnitBase* target_;
    const QtrUnitBase* source_;
    int preShift_;
    int postShift_;
    double factor_;
    double addend_;
    bool explicit_;
};
