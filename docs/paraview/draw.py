#!/usr/bin/env python3
"""Draws the pictures of docs/paraview.md: draw.py KESTOL_EXPORT EXAMPLES FOLDER [--all].

Exports the examples and renders them with VTK (python3-vtk9) without a window; where there is no
display run it under xvfb-run. Each picture is what ParaView shows after the steps of the page.
"""
import argparse
import pathlib
import subprocess
import sys
import tempfile

from vtkmodules.vtkCommonCore import vtkLookupTable
from vtkmodules.vtkCommonDataModel import vtkDataObject
from vtkmodules.vtkFiltersCore import vtkGlyph3D, vtkThreshold
from vtkmodules.vtkFiltersGeneral import vtkWarpVector
from vtkmodules.vtkFiltersGeometry import vtkDataSetSurfaceFilter
from vtkmodules.vtkFiltersSources import vtkArrowSource
from vtkmodules.vtkIOImage import vtkPNGWriter
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
from vtkmodules.vtkRenderingAnnotation import vtkScalarBarActor
from vtkmodules.vtkRenderingCore import (
    vtkActor,
    vtkDataSetMapper,
    vtkRenderer,
    vtkRenderWindow,
    vtkWindowToImageFilter,
)
import vtkmodules.vtkRenderingFreeType  # noqa: F401  fonts
import vtkmodules.vtkRenderingOpenGL2  # noqa: F401  the renderer

SIZE = (560, 360)
POINTS = vtkDataObject.FIELD_ASSOCIATION_POINTS
CELLS = vtkDataObject.FIELD_ASSOCIATION_CELLS
COMPONENTS = ("N", "Vy", "Vz", "T", "My", "Mz")  # the cell array "component" counts from 1


def read(path):
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(str(path))
    reader.Update()
    return reader.GetOutput()


def array_name(data, name):
    """The array's name with its unit."""
    for i in range(data.GetNumberOfArrays()):
        if data.GetArrayName(i).split(" [")[0] == name:
            return data.GetArrayName(i)
    raise KeyError(name)


def bands():
    """A colour map of twelve bands, blue to red."""
    table = vtkLookupTable()
    table.SetNumberOfTableValues(12)
    table.SetHueRange(0.667, 0.0)
    table.Build()
    return table


class Picture:
    def __init__(self):
        self.renderer, self.legend = vtkRenderer(), vtkRenderer()
        self.renderer.SetViewport(0.0, 0.0, 0.8, 1.0)
        self.legend.SetViewport(0.8, 0.0, 1.0, 1.0)
        for renderer in (self.renderer, self.legend):
            renderer.SetBackground(1.0, 1.0, 1.0)

    def add(self, source, color=(0.55, 0.55, 0.55), width=1.0, opacity=1.0, edges=False):
        """A data set in one colour; gives the actor."""
        mapper = vtkDataSetMapper()
        mapper.SetInputData(source)
        mapper.ScalarVisibilityOff()
        actor = vtkActor()
        actor.SetMapper(mapper)
        actor.GetProperty().SetColor(*color)
        actor.GetProperty().SetLineWidth(width)
        actor.GetProperty().SetOpacity(opacity)
        actor.GetProperty().SetEdgeVisibility(edges)
        actor.GetProperty().SetEdgeColor(0.35, 0.35, 0.35)
        actor.GetProperty().SetAmbient(0.65)
        actor.GetProperty().SetDiffuse(0.35)
        self.renderer.AddActor(actor)
        return actor

    def color_by(self, actor, title, cells, span, name=None):
        """Colours an actor by an array (called as the title, or `name`), with a bar."""
        mapper = actor.GetMapper()
        mapper.ScalarVisibilityOn()
        mapper.SetLookupTable(bands())
        mapper.SetScalarRange(*span)
        if cells:
            mapper.SetScalarModeToUseCellFieldData()
        else:
            mapper.SetScalarModeToUsePointFieldData()
        mapper.SelectColorArray(name or title)
        bar = vtkScalarBarActor()
        bar.SetLookupTable(mapper.GetLookupTable())
        bar.SetTitle(title + "\n")
        bar.SetNumberOfLabels(5)
        bar.SetLabelFormat("%.3g")
        bar.SetPosition(0.05, 0.1)
        bar.SetWidth(0.6)
        bar.SetHeight(0.8)
        bar.UnconstrainedFontSizeOn()
        for text in (bar.GetTitleTextProperty(), bar.GetLabelTextProperty()):
            text.SetColor(0, 0, 0)
            text.SetFontSize(11)
            text.BoldOff()
            text.ItalicOff()
            text.ShadowOff()
        self.legend.AddActor2D(bar)

    def arrows(self, grid, name, length, color):
        """Vectors at points, the longest of the given length; none where they are 0."""
        data = grid.GetPointData()
        full = array_name(data, name)
        largest = data.GetArray(full).GetMaxNorm()
        if largest == 0.0:
            return
        grid.GetPointData().SetActiveVectors(full)
        arrow, glyph = vtkArrowSource(), vtkGlyph3D()
        glyph.SetInputData(grid)
        glyph.SetSourceConnection(arrow.GetOutputPort())
        glyph.SetVectorModeToUseVector()
        glyph.SetScaleModeToScaleByVector()
        glyph.SetScaleFactor(length / largest)
        glyph.Update()
        self.add(glyph.GetOutput(), color)

    def save(self, path, view_from, up):
        camera = self.renderer.GetActiveCamera()
        camera.SetFocalPoint(0, 0, 0)
        camera.SetPosition(*view_from)
        camera.SetViewUp(*up)
        camera.ParallelProjectionOn()
        self.renderer.ResetCamera()
        window = vtkRenderWindow()
        window.SetOffScreenRendering(1)
        window.SetMultiSamples(8)
        window.SetSize(*SIZE)
        window.AddRenderer(self.renderer)
        window.AddRenderer(self.legend)
        window.Render()
        image = vtkWindowToImageFilter()
        image.SetInput(window)
        image.ReadFrontBufferOff()
        writer = vtkPNGWriter()
        writer.SetCompressionLevel(9)
        writer.SetFileName(str(path))
        writer.SetInputConnection(image.GetOutputPort())
        writer.Write()


def size_of(grid):
    return grid.GetLength()


def deformed(grid, part):
    """Warp By Vector with U, the largest displacement drawn as `part` of the model's size."""
    data = grid.GetPointData()
    name = array_name(data, "U")
    data.SetActiveVectors(name)
    warp = vtkWarpVector()
    warp.SetInputData(grid)
    largest = data.GetArray(name).GetMaxNorm()
    warp.SetScaleFactor(part * size_of(grid) / largest if largest > 0 else 1.0)
    warp.Update()
    return warp.GetOutput()


def draw_frame(stem, path, component, view_from, up):
    """Deformed beams, one diagram, loads and reactions."""
    grid, diagrams = read(f"{stem}.vtu"), read(f"{stem}_diagrams.vtu")
    picture = Picture()
    picture.add(grid, (0.2, 0.2, 0.2), 2.0)
    picture.add(deformed(grid, 0.05), (0.1, 0.35, 0.8), 2.0)
    diagrams.GetCellData().SetActiveScalars("component")
    chosen = vtkThreshold()
    chosen.SetInputData(diagrams)
    number = COMPONENTS.index(component) + 1
    chosen.SetInputArrayToProcess(0, 0, 0, CELLS, "component")
    chosen.SetLowerThreshold(number)
    chosen.SetUpperThreshold(number)
    chosen.Update()
    actor = picture.add(chosen.GetOutput(), opacity=0.9)
    span = chosen.GetOutput().GetPointData().GetArray("value").GetRange()
    picture.color_by(actor, component, False, span, "value")
    for name, color in (("F", (0.8, 0.1, 0.1)), ("RF", (0.1, 0.55, 0.1))):
        picture.arrows(grid, name, 0.12 * size_of(grid), color)
    picture.save(path, view_from, up)


def draw_surface(stem, path, name, view_from, up, part=0.06):
    """The deformed surface coloured by an array of its points or cells."""
    grid = read(f"{stem}.vtu")
    picture = Picture()
    cells = True
    try:
        full = array_name(grid.GetCellData(), name)
    except KeyError:
        cells, full = False, array_name(grid.GetPointData(), name)
    surface = vtkDataSetSurfaceFilter()
    surface.SetInputData(deformed(grid, part))
    surface.Update()
    actor = picture.add(surface.GetOutput(), edges=True)
    array = (grid.GetCellData() if cells else grid.GetPointData()).GetArray(full)
    picture.color_by(actor, full, cells, array.GetRange())
    picture.save(path, view_from, up)


PLANE, ISO, UP_Y, UP_Z = (0, 0, 1), (-1.0, -1.6, 1.0), (0, 1, 0), (0, 0, 1)
# picture: (example, drawn by, arguments, whether the page shows it)
PICTURES = {
    "frame": ("02-portal-frame", draw_frame, ("Mz", PLANE, UP_Y), True),
    "space-frame": ("06-space-frame", draw_frame, ("My", ISO, UP_Z), False),
    "plate": ("12-plate-under-pressure", draw_surface, ("von Mises top", ISO, UP_Z), False),
    "roof": ("14-cylindrical-roof", draw_surface, ("von Mises bottom", ISO, UP_Z), True),
    "stiffened-plate": ("15-stiffened-plate", draw_surface, ("von Mises top", ISO, UP_Z), False),
    "tube": ("19-thick-tube", draw_surface, ("von Mises", ISO, UP_Z), True),
    "solid-beam": ("20-solid-cantilever", draw_surface, ("von Mises", ISO, UP_Z), False),
}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("kestol_export")
    parser.add_argument("examples", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--all", action="store_true", help="also those that the page does not show")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as work:
        for name, (example, draw, details, shown) in PICTURES.items():
            if not (shown or arguments.all):
                continue
            stem = f"{work}/{name}"
            deck = arguments.examples / f"{example}.dat"
            subprocess.run([arguments.kestol_export, str(deck), "--vtu", f"{stem}.vtu"], check=True)
            draw(stem, arguments.folder / f"{name}.png", *details)
    return 0


if __name__ == "__main__":
    sys.exit(main())
