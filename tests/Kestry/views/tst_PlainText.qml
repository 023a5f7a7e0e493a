import QtQuick
import QtTest
import KestryItems

/// Names, titles and messages show as they are, whatever they hold.
ViewTest {
    id: test

    readonly property string markup: "<b>Aster</b><br>&amp;<br><img src='http://[::1]:9/a.png'>"

    name: "PlainText"

    Component { id: row; SidebarRow { width: 800; label: test.markup; isCurrent: false } }
    Component { id: alert; AlertSheet { width: 1200; height: 400; title: test.markup; message: test.markup } }
    Component { id: banner; Banner { width: 1200; symbol: "clock"; line: test.markup; heading: test.markup } }
    Component { id: heading; SheetHeading { width: 1200; title: test.markup; line: test.markup } }
    Component { id: names; TwoTexts { width: 1200; height: 28; first: test.markup; second: test.markup } }
    Component { id: message; MessageRow { width: 1200; message: test.markup } }
    Component { id: button; PrimaryButtonStyle { label: test.markup } }

    function texts(item) {
        const found = item instanceof Text ? [item] : [];
        for (let i = 0; i < item.children.length; ++i) {
            found.push(...texts(item.children[i]));
        }
        return found;
    }

    function test_markup_is_only_text_data() {
        return [
            {tag: "sidebar", component: row}, {tag: "alert", component: alert},
            {tag: "banner", component: banner}, {tag: "sheet", component: heading},
            {tag: "panel", component: names}, {tag: "message", component: message},
            {tag: "button", component: button},
        ];
    }

    function test_markup_is_only_text(data) {
        const item = createTemporaryObject(data.component, test);
        const shown = texts(item).filter(each => each.text === test.markup);
        verify(shown.length > 0);
        for (const text of shown) {
            compare(text.textFormat, Text.PlainText);
            // As wide as its letters: markup would take none of them for letters.
            verify(text.implicitWidth > 200 || text.truncated);
        }
    }
}
