.pragma library

// Line icons drawn on a 24 x 24 grid. Outline entries are meant to be stroked
// at 1.6 with round caps and joins; filled entries are painted solid, and
// oddEven entries use the odd-even rule so inner subpaths become holes.
// Everything keeps roughly a 2-unit margin so icons line up side by side.

// A full circle as two half arcs; PathSvg has no circle primitive.
function circle(cx, cy, r) {
    return "M" + (cx - r) + " " + cy
         + " A" + r + " " + r + " 0 1 0 " + (cx + r) + " " + cy
         + " A" + r + " " + r + " 0 1 0 " + (cx - r) + " " + cy + " Z";
}

function stroke(d) { return { d: d, filled: false }; }
function fill(d)   { return { d: d, filled: true }; }

var table = {
    "arrow.clockwise": [
        // Open ring, gap at the upper right, arrowhead at the top pointing on clockwise.
        stroke("M18.5 8.25 A7.5 7.5 0 1 1 12 4.5"),
        stroke("M9.4 2.2 L12 4.5 L9.4 6.8")
    ],
    "plus": [
        stroke("M12 5 V19 M5 12 H19")
    ],
    "slider.horizontal.3": [
        // Rails break around each knob so the knob reads as a ring at small sizes.
        stroke("M4 6.5 H12.5 M16.5 6.5 H20"),
        stroke("M12.5 6.5 a2 2 0 1 0 4 0 a2 2 0 1 0 -4 0 Z"),
        stroke("M4 12 H6.5 M10.5 12 H20"),
        stroke("M6.5 12 a2 2 0 1 0 4 0 a2 2 0 1 0 -4 0 Z"),
        stroke("M4 17.5 H13.5 M17.5 17.5 H20"),
        stroke("M13.5 17.5 a2 2 0 1 0 4 0 a2 2 0 1 0 -4 0 Z")
    ],
    "lock": [
        stroke("M7 11 H17 Q19 11 19 13 V18.5 Q19 20.5 17 20.5 H7 Q5 20.5 5 18.5 V13 Q5 11 7 11 Z"),
        stroke("M8.25 11 V8 A3.75 3.75 0 0 1 15.75 8 V11"),
        stroke("M12 14.4 V17")
    ],
    "checkmark.circle": [
        stroke(circle(12, 12, 9)),
        stroke("M8.4 12.3 L10.9 14.8 L15.7 9.6")
    ],
    "xmark": [
        stroke("M6.5 6.5 L17.5 17.5 M17.5 6.5 L6.5 17.5")
    ],
    "folder": [
        stroke("M3.5 17.5 V6.5 Q3.5 5 5 5 H9 Q9.6 5 10 5.4 L11.6 7 H19 Q20.5 7 20.5 8.5 V17.5 Q20.5 19 19 19 H5 Q3.5 19 3.5 17.5 Z"),
        stroke("M3.5 10 H20.5")
    ],
    "info.circle": [
        stroke(circle(12, 12, 9)),
        stroke("M12 11 V16.6"),
        fill(circle(12, 7.9, 1.1))
    ],
    "exclamationmark.triangle": [
        stroke("M10.4 4.8 Q12 2.2 13.6 4.8 L20.8 17.2 Q22.2 19.8 19.2 19.8 H4.8 Q1.8 19.8 3.2 17.2 Z"),
        stroke("M12 9.2 V13.6"),
        fill(circle(12, 16.6, 1.05))
    ],
    "magnifyingglass": [
        stroke(circle(10.5, 10.5, 6.25)),
        stroke("M15.1 15.1 L20 20")
    ],
    "chevron.right": [
        stroke("M9.5 5.5 L16 12 L9.5 18.5")
    ],
    "arrow.left": [
        stroke("M19 12 H5.5 M11 6.5 L5.5 12 L11 17.5")
    ],
    "terminal": [
        stroke("M5.5 4.5 H18.5 Q21 4.5 21 7 V17 Q21 19.5 18.5 19.5 H5.5 Q3 19.5 3 17 V7 Q3 4.5 5.5 4.5 Z"),
        stroke("M6.8 8.8 L10.2 12 L6.8 15.2"),
        stroke("M12.2 15.2 H17")
    ],
    "checkmark.shield": [
        stroke("M12 3 L19 5.7 V11 C19 15.4 16.2 18.6 12 20.9 C7.8 18.6 5 15.4 5 11 V5.7 Z"),
        stroke("M9 11.9 L11.2 14.1 L15.2 9.8")
    ],
    "xmark.circle.fill": [
        // Disc with a round-ended X as a second subpath; odd-even turns it into a hole.
        { d: circle(12, 12, 10)
             + " M12 13.41 L14.62 16.03 A1 1 0 0 0 16.03 14.62 L13.41 12"
             + " L16.03 9.38 A1 1 0 0 0 14.62 7.97 L12 10.59"
             + " L9.38 7.97 A1 1 0 0 0 7.97 9.38 L10.59 12"
             + " L7.97 14.62 A1 1 0 0 0 9.38 16.03 Z",
          filled: true, oddEven: true }
    ],
    "circle.fill": [
        fill(circle(12, 12, 12))
    ]
};

function shapes(name) {
    var s = table[name];
    return s ? s : [];
}
