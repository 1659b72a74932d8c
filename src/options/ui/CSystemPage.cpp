#include "CSystemPage.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

constexpr int kSmallestBuffer = 512;
constexpr int kLargestBuffer = 16 * 1024 * 1024;

} // namespace

CSystemPage::CSystemPage(QWidget* parent)
    : COptionsPage(OptionPageKind::System, QStringLiteral("options-system"), parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* folders = new QFormLayout;
    auto* dataDir = new QLineEdit;
    auto* logDir = new QLineEdit;
    auto* profileDir = new QLineEdit;
    folders->addRow(tr("Zelto &Data Files:"), dataDir);
    folders->addRow(tr("&Log Directory:"), logDir);
    folders->addRow(tr("P&rofile Directory:"), profileDir);
    dataDir->setToolTip(tr("The folder of the queue file; empty for the program's own folder"));
    profileDir->setToolTip(tr("Holds the Profiles, Files and Links folders; empty for the "
                              "program's own folder"));
    bindText(dataDir, config::kDataDir.name);
    bindText(logDir, config::kDefaultDir.name);
    bindText(profileDir, config::kProfilePath.name);
    layout->addLayout(folders);

    auto* network = new QCheckBox(tr("Connect To &Network Drives"));
    network->setToolTip(tr("Has no effect on this system: network drives are folders that are "
                           "already mounted"));
    auto* overwrite = new QCheckBox(tr("&Overwrite Existing Files"));
    auto* subDirs = new QCheckBox(tr("Drag and Drop &Sub-Directories from the file manager"));
    bindCheck(network, config::kConnectNet.name);
    bindCheck(overwrite, config::kOverwrite.name);
    bindCheck(subDirs, config::kDragDropSubDirs.name);
    for (QCheckBox* box : { network, overwrite, subDirs })
        layout->addWidget(box);

    auto* buffers = new QGroupBox(tr("Buffer Sizes in Bytes"));
    auto* bufferForm = new QFormLayout(buffers);
    auto* readBuffer = new QLineEdit;
    auto* writeBuffer = new QLineEdit;
    bufferForm->addRow(tr("R&ead Buffer:"), readBuffer);
    bufferForm->addRow(tr("&Write Buffer:"), writeBuffer);
    bindNumber(readBuffer, ftp::kReadBuffer.name, kSmallestBuffer, kLargestBuffer);
    bindNumber(writeBuffer, ftp::kWriteBuffer.name, kSmallestBuffer, kLargestBuffer);
    layout->addWidget(buffers);

    auto* grid = new QGridLayout;
    addCasing(*grid, 0, tr("Upload File Names (PUT)"), config::kFileCasingPut.name);
    addCasing(*grid, 1, tr("Download File Names (GET)"), config::kFileCasingGet.name);

    auto* dates = new QGroupBox(tr("File Date Representation"));
    auto* datesLayout = new QVBoxLayout(dates);
    std::vector<QRadioButton*> dateButtons;
    for (const QString& text :
        { tr("mm/dd/yyyy"), tr("dd/mm/yyyy"), tr("mmm/dd/yyyy"), tr("dd/mmm/yyyy") }) {
        dateButtons.push_back(new QRadioButton(text));
        datesLayout->addWidget(dateButtons.back());
    }
    bindChoice(dateButtons,
        { QStringLiteral("MM/DD"), QStringLiteral("DD/MM"), QStringLiteral("MON/DD"),
            QStringLiteral("DD/MON") },
        config::kTimeType.name);
    grid->addWidget(dates, 0, 2);
    layout->addLayout(grid);
    layout->addStretch();
}

void CSystemPage::addCasing(QGridLayout& grid, int column, const QString& title, const char* key)
{
    auto* group = new QGroupBox(title);
    auto* groupLayout = new QVBoxLayout(group);
    std::vector<QRadioButton*> buttons { new QRadioButton(tr("Preserve Case")),
        new QRadioButton(tr("Upper Case")), new QRadioButton(tr("Lower Case")) };
    for (QRadioButton* button : buttons)
        groupLayout->addWidget(button);
    groupLayout->addStretch();
    bindChoice(buttons,
        { QStringLiteral("PRESERVE"), QString::fromLatin1(config::kCasingUpper),
            QString::fromLatin1(config::kCasingLower) },
        key);
    grid.addWidget(group, 0, column);
}

} // namespace zelto
