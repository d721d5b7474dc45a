#include "IndexManagerJobs.h"

#include "Spent.h"
#include "Windows.h"

#include "indexmanager/IdentifiersModel.h"
#include "indexmanager/frmIndexManager.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// Its window over a server, with all identifiers listed.
struct IndexManager
{
    Windows windows;
    frmIndexManager window{windows.program};
    IdentifiersModel *model = window.findChild<IdentifiersModel *>();

    explicit IndexManager(const QString &server)
        : windows(server)
    {
        window.show();
        settle();
    }
};

int indexManager(const QStringList &arguments)
{
    const IndexManager shown(arguments.at(0));
    number("identifiers", shown.model->rowCount(), "");
    return 0;
}

/// Types words into the filter letter by letter and waits after each for the list. In CPU.
int identifiers(const QStringList &arguments)
{
    const IndexManager shown(arguments.at(0));
    auto *const filter = shown.window.findChild<QLineEdit *>(u"txtFilter"_s);
    const QString words = arguments.at(1);
    double longest = 0;
    double longestTurn = 0;
    for (qsizetype letters = 1; letters <= words.size(); ++letters) {
        bool isListed = false;
        const auto done = QObject::connect(shown.model, &QAbstractItemModel::modelReset,
                                           [&isListed] { isListed = true; });
        const double before = 1000 * cpuSeconds();
        double turn = before;
        const auto endTurn = [&] {
            const double now = 1000 * cpuSeconds();
            longestTurn = qMax(longestTurn, now - turn);
            turn = now;
        };
        filter->setText(words.first(letters));
        endTurn();
        while (!isListed) {
            QCoreApplication::processEvents();
            endTurn();
        }
        settle();
        endTurn();
        QObject::disconnect(done);
        longest = qMax(longest, turn - before);
        std::printf("%8.2f ms, %d shown: %s\n", turn - before, shown.model->rowCount(),
                    qPrintable(filter->text()));
    }
    number("longest key stroke, CPU", longest, "ms");
    number("longest turn, CPU", longestTurn, "ms");
    return 0;
}

} // namespace

QList<Job> indexManagerJobs()
{
    return {{"indexmanager"_L1, 1, true, indexManager}, {"identifiers"_L1, 2, true, identifiers}};
}
