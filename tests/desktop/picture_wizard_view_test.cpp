#include "desktop/picture_wizard_view.h"

#include "desktop/order_list.h"
#include "desktop/view_fixture.h"

#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>

#include <gmock/gmock.h>

namespace quill::tests {
namespace {

using testing::ElementsAre;

class PictureWizardViewTest : public ViewTest {
  protected:
    /// Opens the wizard at the order of three pictures.
    htx::HtxWiz& open_order() {
        views.add<htx::HtxWiz, desktop::PictureWizardView>();
        htx::show_picture_wizard(program.context, htx::album_caption, {"/p/a.jpg", "/p/b.jpg", "/p/c.jpg"});
        auto& w = *program.windows.loaded<htx::HtxWiz>();
        events.hand_in(w.Command1.click);
        events.hand_in(w.Command4.click);
        return w;
    }
};

TEST_F(PictureWizardViewTest, RowsAreTakenFromTheListThatTheyAreDraggedFrom) {
    auto& w = open_order();
    events.hand_in(w.clear_order.click);
    auto* from = widget<desktop::OrderList>(w, "List3");
    auto* to = widget<desktop::OrderList>(w, "List4");
    ASSERT_EQ(to->count(), 0);
    from->item(2)->setSelected(true);
    from->item(0)->setSelected(true);
    EXPECT_THAT(w.List3.selected_rows, ElementsAre(0, 2));
    to->dropped(from->selected_rows());
    EXPECT_THAT(w.List4.items(), ElementsAre("a.jpg", "c.jpg"));
    EXPECT_EQ(to->count(), 2);
    EXPECT_EQ(from->count(), 3);
}

TEST_F(PictureWizardViewTest, AltWithAnArrowMovesARow) {
    auto& w = open_order();
    auto* list = widget<desktop::OrderList>(w, "List4");
    list->setCurrentRow(0);
    press(list, Qt::Key_Down, Qt::AltModifier);
    press(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(w.List4.items(), ElementsAre("b.jpg", "c.jpg", "a.jpg"));
    press(list, Qt::Key_Down, Qt::AltModifier);
    press(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_THAT(w.List5.items(), ElementsAre("1", "0", "2"));
}

}  // namespace
}  // namespace quill::tests
