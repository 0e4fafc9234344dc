import QtQuick
import QtTest

// What every view test shares: a window large enough to click anywhere in a view, and lookups
// by what a person reads on screen rather than by how a view happens to be built.
TestCase {
    id: base

    width: 900
    height: 900
    // A test case hides itself, and with it every view made inside.
    visible: true
    when: windowShown

    // Every item under `root`, itself included, for which `test` holds, in tree order.
    function itemsUnder(root, test) {
        const found = []
        const visit = item => {
            if (test(item))
                found.push(item)
            for (let i = 0; i < item.children.length; ++i)
                visit(item.children[i])
        }
        visit(root)
        return found
    }
    function firstUnder(root, test, what) {
        const found = itemsUnder(root, test)
        verify(found.length > 0, "nothing under " + root + " is " + what)
        return found[0]
    }
    function isControl(item) {
        return typeof item.clicked === "function"
    }
    // The text item that reads `text` (not a button labelled so).
    function textItem(root, text) {
        return firstUnder(root, item => !isControl(item) && item.text === text, "a text \"" + text + "\"")
    }
    function textStarting(root, prefix) {
        return firstUnder(root, item => !isControl(item) && typeof item.text === "string"
                                        && item.text.startsWith(prefix), "a text from \"" + prefix + "\"")
    }
    function button(root, label) {
        return firstUnder(root, item => isControl(item) && item.text === label, "a button \"" + label + "\"")
    }
    function buttonNamed(root, name) {
        return firstUnder(root, item => isControl(item) && item.Accessible.name === name,
                          "a control named \"" + name + "\"")
    }
    function buttonsLabelled(root, label) {
        return itemsUnder(root, item => isControl(item) && item.text === label)
    }
    // The popup a view declares (a dialog lives outside the visual tree).
    function popupOf(view) {
        for (let i = 0; i < view.resources.length; ++i) {
            if (view.resources[i].opened !== undefined)
                return view.resources[i]
        }
        fail("no popup in " + view)
    }
    function spyOn(target, signalName) {
        return createTemporaryObject(spyComponent, base, { target: target, signalName: signalName })
    }
    // A list model of `rows`, each an object of role values.
    function listOf(rows) {
        const model = createTemporaryObject(listComponent, base)
        for (const row of rows)
            model.append(row)
        return model
    }
    function compareColor(actual, red, green, blue, message) {
        fuzzyCompare(actual.r, red, 0.002, message + " (red)")
        fuzzyCompare(actual.g, green, 0.002, message + " (green)")
        fuzzyCompare(actual.b, blue, 0.002, message + " (blue)")
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }
    Component {
        id: listComponent

        ListModel {}
    }
}
