"""What the module says of its arrays: their shapes, and the short texts of models and results."""
import re

import kestol
from frames import portal
from kestol.arrays import _Attribute


def described(part):
    """The names of the arrays of a class, with their texts."""
    kinds = {name: getattr(type(part), name) for name in dir(type(part))}
    return {name: kind.__doc__ for name, kind in kinds.items() if isinstance(kind, _Attribute)}


def test_shapes_are_those_that_the_texts_say(deck):
    result = kestol.solve(deck)
    solids = len(result.solids.elements) > 0
    sizes = {"nodes": result.model.node_count, "beams": len(result.beams),
             "stations": result.beams.x.shape[1], "dofs": result.model.dofs_per_node,
             "supports": len(result.reaction_nodes)}
    for part in (result, result.beams, result.shells, result.solids):
        texts = described(part)
        assert len(texts) >= 4
        if "elements" in texts:
            sizes["points"] = len(part.elements)
        for name, text in texts.items():
            shape = re.match(r"\(([\w, ]+)\)", text)[1].rstrip(",").split(", ")
            wanted = [int(word) if word.isdigit() else sizes[word] for word in shape]
            if "without solids" in text and not solids:
                wanted[0] = 0
            assert list(getattr(part, name).shape) == wanted, (name, text)


def test_arrays_of_forces_name_their_units():
    result = kestol.solve(portal())
    for part in (result.beams, result.shells, result.solids):
        for name, text in described(part).items():
            whole = name in ("numbers", "materials", "nodes", "elements", "axes")
            assert bool(re.search(r"\[[a-z /]+\]", text)) != whole, (name, text)


def test_models_and_results_in_short():
    assert repr(portal()) == "<kestol.Model 'model': 4 nodes, 3 elements>"
    assert repr(kestol.solve(portal())) == "<kestol.Results of 'model': 4 nodes, 3 beams>"
