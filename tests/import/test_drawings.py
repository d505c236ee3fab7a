"""Frames as drawings: layers, curves, blocks, and what is no drawing."""
import unittest

import ezdxf
from recipes import PORTAL_RECIPE
from support import Case, Deck


class Drawings(Case):
    def drawing(self, draw, version="R2013"):
        document = ezdxf.new(version)
        draw(document.modelspace())
        document.saveas(self.folder / "frame.dxf")

    @staticmethod
    def portal(space):
        for layer, *ends in (("columns", (0, 0), (0, 4)), ("columns", (6, 0), (6, 4)),
                             ("beam", (0, 4), (6, 4))):
            space.add_line(*ends, dxfattribs={"layer": layer})
        for layer, place in (("feet", (0, 0)), ("feet", (6, 0)), ("corner", (0, 4))):
            space.add_point(place, dxfattribs={"layer": layer})

    def warned(self, *texts):
        """These warnings and no others, whether groups are listed or a deck is made."""
        self.write("portal.toml", PORTAL_RECIPE)
        wanted = "".join(f"frame.dxf: warning: {text} [reader]\n" for text in texts)
        for arguments in (("--list", "frame.dxf"),
                          ("--force", "frame.dxf", "portal.toml", "-o", "model.dat")):
            done = self.run_import(*arguments)
            self.assertEqual((done.returncode, done.stderr), (0, wanted))
        self.assertEqual(len(Deck(self.read("model.dat")).elements), 3)

    def test_layers_of_a_drawing_are_groups(self):
        def draw(space):
            space.add_lwpolyline([(0, 0), (0, 2), (0, 4)], dxfattribs={"layer": "columns"})
            space.add_line((6, 0), (6, 4 + 1e-7), dxfattribs={"layer": "columns"})
            space.add_polyline3d([(0, 4, 0), (3, 4, 0), (6, 4, 0)], dxfattribs={"layer": "beam"})
            space.add_point((0, 0), dxfattribs={"layer": "feet"})
            space.add_point((6, 0), dxfattribs={"layer": "feet"})
            space.add_point((0, 4), dxfattribs={"layer": "corner"})
        self.drawing(draw)
        self.write("portal.toml", PORTAL_RECIPE)
        done = self.run_import("frame.dxf", "portal.toml", "-o", "model.dat")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        results = self.solve()
        k = 4 / 6
        self.near(results.reactions[results.deck.node_at(0, 0)][2],
                  10000 * 4 / 2 * (3 * k + 1) / (6 * k + 1), 1e-4)
        self.assertEqual(len(results.deck.nodes), 6)
        listing = self.made("--list", "frame.dxf")
        self.assertRegex(listing, r"columns +1 +3 +5 +length 8\n")
        self.assertRegex(listing, r"feet +0 +2 +2\n")

    def test_segments_and_points_are_numbered_in_their_order(self):
        def draw(space):
            space.add_line((0, 0), (4, 0), dxfattribs={"layer": "columns"})
            space.add_line((4, 0), (4, 3), dxfattribs={"layer": "beam"})
            space.add_point((0, 0), dxfattribs={"layer": "feet"})
            space.add_point((4, 3), dxfattribs={"layer": "corner"})
        self.drawing(draw)
        self.write("frame.toml", PORTAL_RECIPE)
        numbers = self.made("-q", "frame.dxf", "frame.toml", "-o", "model.dat", "--map", "-")
        self.assertEqual(numbers.split("\n"), [
            "kind,old,new", "node,1,1", "node,2,2", "node,3,2", "node,4,3", "node,5,1", "node,6,3",
            "element,1,1", "element,2,2", "cell,3,", "cell,4,", ""])

    def test_ends_meet_within_a_millionth_of_the_drawing(self):
        for size in (1000.0, 0.001):
            for gap, merged in ((0.9e-6, 1), (1.1e-6, 0)):
                def draw(space, gap=gap * size, size=size):
                    space.add_line((0, 0), (size, 0))
                    space.add_line((size, gap), (size, size))
                self.drawing(draw)
                done = self.run_import("-v", "--list", "frame.dxf")
                self.assertIn(f"note: {merged} node{'s' * (not merged)} merged within", done.stderr)

    def test_closed_polylines_close(self):
        self.drawing(lambda s: s.add_lwpolyline([(0, 0), (1, 0), (1, 1)], close=True))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +3 +3 +length 3.41421\n")
        self.drawing(lambda s: s.add_lwpolyline([(0, 0), (1, 0)], close=True))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +1 +2 +length 1\n")

    def test_old_polylines_are_read(self):
        self.drawing(lambda s: s.add_polyline2d([(0, 0), (1, 0), (1, 1)]))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +2 +3 +length 2\n")

    CURVES = (
        ("ARC", lambda s, layer: s.add_arc((0, 0), 1, 0, 90, dxfattribs=layer)),
        ("CIRCLE", lambda s, layer: s.add_circle((0, 0), 1, dxfattribs=layer)),
        ("ELLIPSE", lambda s, layer: s.add_ellipse((0, 0), (2, 0), 0.5, dxfattribs=layer)),
        ("SPLINE", lambda s, layer: s.add_spline([(0, 0), (1, 1), (2, 0)], dxfattribs=layer)),
        ("HELIX", lambda s, layer: s.add_helix(1, 1, 1, dxfattribs=layer)),
        ("LWPOLYLINE with arcs", lambda s, layer: s.add_lwpolyline(
            [(0, 0, 0, 0, 1), (1, 0, 0, 0, 0)], dxfattribs=layer)),
        ("POLYLINE with arcs", lambda s, layer: s.add_polyline2d(
            [(0, 0, 0, 0, 1), (1, 0)], format="xyseb", dxfattribs=layer)))

    def test_curves_among_the_beams_are_refused(self):
        self.write("x.toml", PORTAL_RECIPE)
        for kind, add in self.CURVES:
            with self.subTest(kind=kind):
                def draw(space, add=add):
                    space.add_line((0, 0), (0, 4), dxfattribs={"layer": "columns"})
                    add(space, {"layer": "beam"})
                self.drawing(draw)
                done = self.run_import("frame.dxf", "x.toml", "-o", "model.dat")
                self.assertEqual((done.returncode, done.stderr), (
                    2, f'frame.dxf: error: layer "beam" has 1 {kind}; beams are straight: draw '
                    "segments [dxf]\n"))
                self.assertFalse((self.folder / "model.dat").exists())

    def test_curves_of_layers_that_become_no_beams_are_warned_of(self):
        """Also where a support names the layer: round marks around feet are usual."""
        for layer in ("notes", "feet"):
            for kind, add in self.CURVES:
                with self.subTest(kind=kind, layer=layer):
                    def draw(space, add=add, layer=layer):
                        self.portal(space)
                        add(space, {"layer": layer})
                    self.drawing(draw)
                    self.warned(f'1 {kind} on layer "{layer}" left out; beams are straight: draw segments')

    def test_what_might_hold_beams_is_warned_of(self):
        def draw(space):
            self.portal(space)
            space.doc.blocks.new("frame").add_line((0, 0), (1, 0))
            for layer in ("0", "0", "bays"):
                space.add_blockref("frame", (0, 0), dxfattribs={"layer": layer})
            space.add_3dface([(0, 0), (1, 0), (1, 1)], dxfattribs={"layer": "beam"})
            space.add_mesh(dxfattribs={"layer": "slab"})
            space.add_polymesh((2, 2), dxfattribs={"layer": "slab"})
            space.add_arc((0, 0), 1, 0, 90, dxfattribs={"layer": "b"})
            space.add_arc((0, 0), 2, 0, 90, dxfattribs={"layer": "a"})
        self.drawing(draw)
        kinds = "only LINE, 3DLINE, LWPOLYLINE and POLYLINE become beams"
        self.warned(
            '3 INSERT on layers "0", "bays" left out; explode the blocks to have what is in them',
            f'1 3DFACE on layer "beam" left out; {kinds}', f'1 MESH on layer "slab" left out; {kinds}',
            f'1 POLYLINE of a surface on layer "slab" left out; {kinds}',
            '2 ARC on layers "b", "a" left out; beams are straight: draw segments')

    def test_kinds_that_nobody_knows_are_warned_of(self):
        """Other programs have kinds of their own: they are no reason to refuse a drawing."""
        def draw(space):
            self.portal(space)
            space.add_circle((0, 0), 1, dxfattribs={"layer": "beam"})
        for version in ("R12", "R2010"):
            self.drawing(draw, version)
            self.write("frame.dxf", self.read("frame.dxf").replace("\nCIRCLE\n", "\nGIRDER\n"))
            self.warned('1 GIRDER on layer "beam" left out; only LINE, 3DLINE, LWPOLYLINE and POLYLINE '
                        "become beams")

    def test_what_is_never_a_beam_is_noted_on_demand(self):
        def draw(space):
            self.portal(space)
            space.add_text("roof", dxfattribs={"layer": "beam"})
            space.add_mtext("roof", dxfattribs={"layer": "beam"})
            space.add_linear_dim((0, -1), (0, 0), (6, 0)).render()
            space.add_hatch().paths.add_polyline_path([(0, 0), (1, 0), (1, 1)])
            space.add_solid([(0, 0), (1, 0), (1, 1)])
            space.add_leader([(0, 0), (1, 1)])
            space.add_ray((0, 0), (1, 0))
            space.add_xline((0, 0), (1, 0))
        self.drawing(draw)
        self.warned()
        done = self.run_import("-v", "--list", "frame.dxf")
        self.assertIn("kestol-import: note: entities of the drawing that are no beams are left out: "
                      "1 DIMENSION, 1 HATCH, 1 LEADER, 1 MTEXT, 1 RAY, 1 SOLID, 1 TEXT, "
                      "1 XLINE\n", done.stderr)

    def test_a_drawing_without_lines_is_refused(self):
        message = "frame.dxf: error: the drawing has no LINE, LWPOLYLINE, POLYLINE or 3DLINE"
        self.write("x.toml", PORTAL_RECIPE)
        self.drawing(lambda s: s.add_point((0, 0)))
        self.refused(f"{message} [dxf]", "frame.dxf", "x.toml", "-o", "model.dat")

        def draw(space):
            space.doc.blocks.new("frame")
            space.add_blockref("frame", (0, 0))
            space.add_circle((0, 0), 1, dxfattribs={"layer": "marks"})
        self.drawing(draw)
        self.refused(f'{message}; 1 INSERT on layer "0" left out; explode the blocks to have what is in '
                     'them; 1 CIRCLE on layer "marks" left out; beams are straight: draw segments [dxf]',
                     "frame.dxf", "x.toml", "-o", "model.dat")

    def test_coordinates_must_be_finite(self):
        self.drawing(lambda s: s.add_line((0, 0), (1, 7.25)))
        text = self.read("frame.dxf")
        self.write("frame.dxf", text.replace("\n7.25\n", "\n1e999\n"))
        done = self.run_import("--list", "frame.dxf")
        self.assertEqual(done.stderr, "frame.dxf: error: a point has a coordinate that is not finite "
                         "[dxf]\n")

    def test_what_is_no_drawing_is_refused(self):
        self.drawing(lambda s: s.add_line((0, 0), (1, 0)))
        whole = (self.folder / "frame.dxf").read_bytes()
        self.write("x.toml", PORTAL_RECIPE)
        for cut in [0, 1, 2, 100, 1000, len(whole) // 2, len(whole) - 20]:
            with self.subTest(cut=cut):
                self.write("frame.dxf", whole[:cut])
                done = self.run_import("--list", "frame.dxf")
                self.assertNotIn("Traceback", done.stderr)
                if done.returncode:
                    self.assertEqual(done.returncode, 2)
                    self.assertRegex(done.stderr, r"^frame\.dxf: error: .* \[dxf\]\n$")
        self.write("frame.dxf", "no drawing")
        self.assertEqual(self.run_import("--list", "frame.dxf").returncode, 2)


if __name__ == "__main__":
    unittest.main()
