#pragma once

#include "controls/parts/LateWidget.h"
#include "controls/session/ProjectSession.h"

#include <QVBoxLayout>

#include <functional>

/// A page of a tab control that is made late; `connectPage` then ties the new page to its editor.
template <typename Page>
class LatePage final : public LateWidget
{
public:
    LatePage(ProjectSession &session, std::function<void(Page *)> connectPage, QWidget *parent)
        : LateWidget(parent)
        , m_session(session)
        , m_connectPage(std::move(connectPage))
    {
    }

    [[nodiscard]] Page *ifMade() const { return m_page; } ///< null until it is made
    [[nodiscard]] Page *made()
    {
        makeContent();
        return m_page;
    }

private:
    void layOut() override
    {
        m_page = new Page(m_session, this);
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(m_page);
        m_connectPage(m_page);
    }

    ProjectSession &m_session;
    std::function<void(Page *)> m_connectPage;
    Page *m_page = nullptr;
};
