#include "ui/metadata/wizSilent.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QThread>
#include <QVBoxLayout>

#include "metadata/SilentMp3.h"

namespace jk {

namespace {

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

// What the worker hands back; read only after its thread ended.
struct wizSilent::Work {
    std::string sizeText;
    IoResult result;
    std::string path;
};

wizSilent::wizSilent(std::string folder, QWidget* parent)
    : QDialog(parent), m_folder(std::move(folder)) {
    setObjectName(QStringLiteral("wizSilent"));
    setWindowTitle(tr("Silent MP3 Wizard"));

    auto* icon = new QLabel;
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("audio-x-generic"),
                                     style()->standardIcon(QStyle::SP_MediaVolumeMuted))
                        .pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    auto* intro = new QLabel(tr("Makes a playable MP3 file of silence, as large as you choose, "
                                "in Jukarra's data folder:\n%1")
                                 .arg(ToQString(m_folder)));
    intro->setWordWrap(true);
    intro->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* head = new QHBoxLayout;
    head->addWidget(icon);
    head->addSpacing(12);
    head->addWidget(intro, 1);

    m_size = new QLineEdit(QStringLiteral("5000"));
    m_size->setObjectName(QStringLiteral("Text1"));
    m_size->setMaximumWidth(120);
    auto* form = new QFormLayout;
    form->addRow(tr("Size (KB):"), m_size);

    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("ProgBar"));
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->hide();
    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_doIt = new QPushButton(tr("Do it!"));
    m_doIt->setObjectName(QStringLiteral("Command1"));
    m_doIt->setDefault(true);
    m_close = new QPushButton(tr("Close"));
    m_close->setObjectName(QStringLiteral("Command2"));
    m_close->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(m_doIt, QDialogButtonBox::AcceptRole);
    buttons->addButton(m_close, QDialogButtonBox::RejectRole);
    connect(m_doIt, &QPushButton::clicked, this, &wizSilent::Command1_Click);
    connect(m_close, &QPushButton::clicked, this, &wizSilent::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addLayout(head);
    layout->addLayout(form);
    layout->addWidget(m_progress);
    layout->addWidget(m_status);
    layout->addStretch(1);
    layout->addWidget(buttons);
    resize(480, sizeHint().height());
}

wizSilent::~wizSilent() {
    if (m_worker != nullptr) {
        m_worker->wait();
    }
}

void wizSilent::reject() {
    if (!Working()) {
        QDialog::reject();
    }
}

void wizSilent::Command1_Click() {
    if (Working()) {
        return;
    }
    m_doIt->setEnabled(false);
    m_close->setEnabled(false);
    m_size->setEnabled(false);
    m_status->clear();
    m_progress->show();

    m_work = std::make_shared<Work>();
    m_work->sizeText = m_size->text().toStdString();
    const std::shared_ptr<Work> work = m_work;
    const std::string folder = m_folder;
    m_worker = QThread::create(
        [work, folder] { work->result = MakeSilentFile(folder, work->sizeText, &work->path); });
    connect(m_worker, &QThread::finished, this, &wizSilent::WorkDone);
    m_worker->start();
}

void wizSilent::WorkDone() {
    m_worker->wait();
    m_worker->deleteLater();
    m_worker = nullptr;
    m_progress->hide();
    m_doIt->setEnabled(true);
    m_close->setEnabled(true);
    m_size->setEnabled(true);

    const Work& work = *m_work;
    if (work.result.ok) {
        m_status->setText(tr("Written: %1").arg(ToQString(work.path)));
        Q_EMIT Finished(true, ToQString(work.path));
        return;
    }
    const QString reason = ToQString(work.result.error);
    m_status->setText(reason);
    Q_EMIT Finished(false, reason);
    QMessageBox::warning(this, tr("Sorry..."), reason);
}

void ShowSilentWizard(QWidget* parent, const std::string& folder) {
    wizSilent window(folder, parent);
    window.exec();
}

}  // namespace jk
