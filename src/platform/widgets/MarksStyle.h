#pragma once

#include <QProxyStyle>

/// The system's style with one addition: on a dark background the frames of check marks and option
/// marks, which some styles draw darker still, are drawn where they can be seen.
class MarksStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};
