#include "ui/catalogue/Virtual_Summary.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "catalogue/VirtualSummary.h"
#include "ui/catalogue/DialogParts.h"

namespace jk {
namespace {

QLabel* Figure(const QString& text, const char* name) {
    auto* label = new QLabel(text);
    label->setObjectName(QLatin1String(name));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

}  // namespace

Virtual_Summary::Virtual_Summary(const VirtualSummary& summary, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Virtual_Summary"));
    setWindowTitle(QStringLiteral("Virtual Drives"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("media-optical")));

    auto* figures = new QFormLayout;
    figures->setHorizontalSpacing(24);
    figures->addRow(QStringLiteral("Total drives:"),
                    Figure(QString::number(summary.Drives), "lblDrives"));
    figures->addRow(QStringLiteral("Total songs:"),
                    Figure(QString::number(summary.Songs), "lblSongs"));
    figures->addRow(QStringLiteral("Total size:"), Figure(ToQString(summary.SizeText), "lblSize"));
    figures->addRow(QStringLiteral("Total playing time:"),
                    Figure(ToQString(summary.TimeText), "lblTime"));

    auto* icon = new QLabel;
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("media-optical"),
                                     style()->standardIcon(QStyle::SP_DriveCDIcon))
                        .pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    auto* body = new QHBoxLayout;
    body->addWidget(icon);
    body->addSpacing(12);
    body->addLayout(figures, 1);

    QPushButton* close = DialogButton("Close", "Command1");
    close->setDefault(true);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(close, QDialogButtonBox::RejectRole);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(14);
    layout->addLayout(body);
    layout->addWidget(buttons);
    resize(360, sizeHint().height());
}

}  // namespace jk
