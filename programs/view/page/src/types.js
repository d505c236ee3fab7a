// The records of the page, for the type checker alone: nothing here runs.

/** @typedef {[number, number, number]} Vec3 */
/** @typedef {Float64Array | Float32Array} Reals */
/** @typedef {Uint32Array} Indices */

/**
 * A block of numbers in an inert script element. `f64` and `f32` hold the numbers as they
 * are; `u16` holds steps between the limits of each component; `delta` holds differences of whole
 * numbers, seven bits a byte.
 * @typedef {{type: 'f64'|'f32'|'u16'|'delta', count: number, low?: number[],
 *            step?: number[]}} BlockHead
 */

/**
 * The support of some nodes: `runs` are pairs (first node index, how many). Axes are rows.
 * @typedef {{codes: string, values: number[], axes?: number[], runs: number[]}} SupportGroup
 * @typedef {{force: Vec3, moment: Vec3, runs: number[]}} NodalLoadGroup
 * @typedef {{mesh: number, kind: 'global'|'projected'|'local'|'face', face: number, value: Vec3,
 *            couple: number, runs: number[]}} ElementLoadGroup
 * @typedef {{nodal: NodalLoadGroup[], elements: ElementLoadGroup[], weight: boolean,
 *            gravity: Vec3}} Loads
 */

/**
 * @typedef {{kind: 'beam'|'shell'|'solid', nnode: number, count: number, points: number,
 *            first: number, material: number, stations: number[], axes: string}} MeshHead
 * @typedef {{number: number, name?: string, [key: string]: number | string | undefined}} Material
 * @typedef {{force: Vec3, moment: Vec3}} Wrench
 * @typedef {{loads: Wrench, reactions: Wrench, drilling?: Vec3, relativeError: number}}
 *   Equilibrium
 * @typedef {{code: string, severity: 'error'|'warning', file: string, line: number,
 *            column: number, endColumn: number, text: string, nodes: number[],
 *            elements: number[]}} Finding
 * @typedef {{text: string[], motion: Record<string, {u: Vec3, rotation: Vec3}>}} Mechanism
 * @typedef {{name: string, category?: string, equilibrium?: Equilibrium, reactions?: object[],
 *            loads: Loads}} CaseHead
 * @typedef {{name: string, factors: Record<string, number>, formula: string}} Combination
 */

/**
 * What the small JSON block of the page says.
 * @typedef {{schema: string, version: string, deck: string, title: string, text: string,
 *            omittedLines: number, exact: boolean, tables: 'none'|'supports'|'all',
 *            units: {force: string, length: string, pressure: string},
 *            dimension: number, nodes: number, deckNodes: number,
 *            materials: Material[], meshes: MeshHead[], supports: SupportGroup[],
 *            hinges: {element: number, end: number}[], nodeNumbers?: boolean,
 *            cases: CaseHead[], combinations: Combination[],
 *            findings: Finding[], mechanisms: Mechanism[], modes: number,
 *            blocks: Record<string, BlockHead>}} Head
 */

/**
 * One set of elements of one kind. `conn` holds node indices; `faces` of solids on the surface are
 * coded 4 x element + face.
 * @typedef {{head: MeshHead, index: number, kind: 'beam'|'shell'|'solid', nnode: number,
 *            count: number, points: number, conn: Indices, numbers: Indices | null,
 *            materials: Indices | null, axes: Reals | null, faces: Indices | null}} Mesh
 * @typedef {{head: Head, dimension: number, nodes: number, x: Reals, meshes: Mesh[],
 *            centre: Vec3, size: number, low: Vec3, high: Vec3, plane: boolean,
 *            block: (name: string) => Reals | Indices | null,
 *            elementAt: (number: number) => {mesh: Mesh, index: number} | null,
 *            nodeNumber: (index: number) => number,
 *            nodeIndex: (number: number) => number}} Model
 */

/**
 * The answer of one load case or combination. Values of meshes: beams 6 per station, shells 8 per
 * point, solids 6 per point. An envelope
 * has its combinations as members: what is not linear is computed for each of them.
 * @typedef {{values: Reals | null, stationU: Reals | null}} MeshResult
 * @typedef {{name: string, kind: 'case'|'combination'|'envelope', formula: string, u: Reals,
 *            rotation: Reals | null, meshes: MeshResult[], nodalStress: Reals | null,
 *            reactionNodes: Indices, reactions: Reals, equilibrium: Equilibrium | null,
 *            reactionRecords: object[] | null, loads: Loads, members?: Result[],
 *            side?: 1 | -1}} Result
 */

/**
 * What can be shown as colours or diagrams. `place` says what the values belong to.
 * @typedef {{id: string, label: string, unit: string, group: string, signed: boolean,
 *            place: 'node'|'shell'|'solid'|'beam', component: number,
 *            of: (result: Result, mesh: Mesh | null, out: Float32Array) => void}} Quantity
 */

/**
 * @typedef {{kind: 'node'|'element', number: number}} Picked
 * @typedef {{kind: string, number: number, type?: string, at?: Record<string, number>,
 *            values: Record<string, number | number[]>}} ValueUnder
 */

export {};
