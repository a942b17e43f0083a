#pragma once

// "Virtual Drives": the totals of every catalogued volume in four labels, and Close.

#include <QDialog>

namespace jk {

struct VirtualSummary;

class Virtual_Summary final : public QDialog {
    Q_OBJECT

public:
    explicit Virtual_Summary(const VirtualSummary& summary, QWidget* parent = nullptr);
};

}  // namespace jk
